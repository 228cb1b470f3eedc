// The platform's dialogs with the rule of the open forms around them: while one is open, every form is
// disabled.
#pragma once

#include "platform/dialogs.h"
#include "widgets/form.h"

namespace zendrix::core {

class ModalMessageBoxes : public platform::MessageBoxes {
 public:
  ModalMessageBoxes(platform::MessageBoxes& boxes, widgets::FormList& forms) : boxes_(boxes), forms_(forms) {}
  platform::BoxAnswer Show(const platform::BoxRequest& request) override {
    const widgets::ModalScope modal(forms_);
    return boxes_.Show(request);
  }

 private:
  platform::MessageBoxes& boxes_;
  widgets::FormList& forms_;
};

class ModalFileDialogs : public platform::FileDialogs {
 public:
  ModalFileDialogs(platform::FileDialogs& dialogs, widgets::FormList& forms)
      : dialogs_(dialogs), forms_(forms) {}
  std::string Choose(const platform::FileRequest& request) override {
    const widgets::ModalScope modal(forms_);
    return dialogs_.Choose(request);
  }

 private:
  platform::FileDialogs& dialogs_;
  widgets::FormList& forms_;
};

class ModalColourDialogs : public platform::ColourDialogs {
 public:
  ModalColourDialogs(platform::ColourDialogs& dialogs, widgets::FormList& forms)
      : dialogs_(dialogs), forms_(forms) {}
  std::optional<std::uint32_t> Choose(const platform::ColourRequest& request) override {
    const widgets::ModalScope modal(forms_);
    return dialogs_.Choose(request);
  }

 private:
  platform::ColourDialogs& dialogs_;
  widgets::FormList& forms_;
};

}  // namespace zendrix::core
