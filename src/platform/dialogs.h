// The platform's ready-made dialogs. Texts are single-byte (Windows-1252) and always shown as plain text.
#pragma once

#include <string>

namespace zendrix::platform {

enum class BoxIcon { kNone, kInformation, kQuestion, kExclamation, kStop };
enum class BoxButtons { kOk, kYesNo };
enum class BoxAnswer { kOk, kYes, kNo };

struct BoxRequest {
  std::string title;
  std::string text;
  BoxIcon icon = BoxIcon::kNone;
  BoxButtons buttons = BoxButtons::kOk;
};

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  // Shows the box and waits; the message loop runs meanwhile.
  virtual BoxAnswer Show(const BoxRequest& request) = 0;
};

struct FileRequest {
  std::string title;
  std::string folder;  // to begin in
  std::string filter;  // "label|pattern;pattern|label|pattern"
  std::string name;    // proposed, for saving
  bool saving = false;
};

class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  // The chosen path, or empty when the user cancelled.
  virtual std::string Choose(const FileRequest& request) = 0;
};

}  // namespace zendrix::platform
