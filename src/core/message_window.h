// A small modal window with one message and an OK button, which can close by itself.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/app_state.h"
#include "widgets/form.h"
#include "widgets/label.h"

namespace zendrix::core {

class frmMsg : public widgets::Form {
 public:
  explicit frmMsg(AppState& app);
  ~frmMsg() override { Unload(); }

  // To be set before Display. An empty title becomes the product's name. 0 seconds: no closing by itself;
  // above 65 counts as 65; above 32 the interval does not fit its 16 bits, and Display raises 6.
  std::string Title;
  std::string Message;
  std::uint8_t Seconds = 0;

  // The only proper way to show the window; returns when it has gone.
  void Display();

  widgets::Label lblMsg{"lblMsg"};

  void cmdOK_Click() { Unload(); }
  void TimerClose_Timer() { Unload(); }

 private:
  void OnLoad() override;
  // A window that was not opened through Display says so and goes away.
  void OnActivate() override;
  void OnUnload() override;

  AppState& app_;
  bool displayed_ = false;
  std::unique_ptr<platform::Timer> TimerClose_;
};

}  // namespace zendrix::core
