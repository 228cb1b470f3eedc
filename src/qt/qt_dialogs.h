// Message boxes and file dialogs of the platform seam on the toolkit's.
#pragma once

#include "platform/dialogs.h"

namespace zendrix::qt {

class QtMessageBoxes : public platform::MessageBoxes {
 public:
  platform::BoxAnswer Show(const platform::BoxRequest& request) override;
};

class QtFileDialogs : public platform::FileDialogs {
 public:
  std::string Choose(const platform::FileRequest& request) override;
};

}  // namespace zendrix::qt
