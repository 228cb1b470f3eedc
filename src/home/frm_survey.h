// The survey: a page of the portal in a window of its own.
#pragma once

#include <string>

#include "core/app_state.h"
#include "home/portal_page.h"
#include "widgets/form.h"

namespace zendrix::home {

class frmSurvey : public widgets::Form {
 public:
  frmSurvey(core::AppState& app, std::string address)
      : Form(app.forms, "frmSurvey"), page(app, WBr), address_(std::move(address)) {
    title = app.ProductName;
  }
  ~frmSurvey() override { Unload(); }

  widgets::PortalView WBr{"WBr"};
  PortalPage page;

 protected:
  void OnLoad() override { page.Navigate(address_); }
  void OnUnload() override { page.Stop(); }

 private:
  std::string address_;
};

}  // namespace zendrix::home
