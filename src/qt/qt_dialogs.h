// Message boxes, file and colour dialogs of the platform seam on the toolkit's.
#pragma once

#include "platform/dialogs.h"
#include "qt/theme.h"

namespace zendrix::qt {

class QtMessageBoxes : public platform::MessageBoxes {
 public:
  platform::BoxAnswer Show(const platform::BoxRequest& request) override;
};

class QtFileDialogs : public platform::FileDialogs {
 public:
  std::string Choose(const platform::FileRequest& request) override;
};

class QtColourDialogs : public platform::ColourDialogs {
 public:
  // `theme` knows the colours of the desktop; it outlives the object.
  explicit QtColourDialogs(const Theme& theme) : theme_(theme) {}
  std::optional<std::uint32_t> Choose(const platform::ColourRequest& request) override;

 private:
  const Theme& theme_;
};

}  // namespace zendrix::qt
