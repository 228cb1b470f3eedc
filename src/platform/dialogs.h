// The platform's ready-made dialogs. Texts are single-byte (Windows-1252) and always shown as plain text.
#pragma once

#include <cstdint>
#include <optional>
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
  int filter_index = 1;  // of the filter to begin with; that of the first is 1
};

class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  // The chosen path, or empty when the user cancelled.
  virtual std::string Choose(const FileRequest& request) = 0;
};

// A colour has red in its low byte, then green, then blue; with the top bit set it is the number of a colour
// of the user's desktop.
struct ColourRequest {
  std::string title;
  std::uint32_t colour = 0;  // to begin with
};

class ColourDialogs {
 public:
  virtual ~ColourDialogs() = default;
  // The chosen colour, or nothing when the user cancelled.
  virtual std::optional<std::uint32_t> Choose(const ColourRequest& request) = 0;
};

}  // namespace zendrix::platform
