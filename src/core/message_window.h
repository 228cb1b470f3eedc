// A small modal window with one message and an OK button, which can close by itself.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "core/app_state.h"
#include "widgets/form.h"
#include "widgets/label.h"

namespace zendrix::core {

class frmMsg : public widgets::Form {
 public:
  explicit frmMsg(AppState& app);

  // To be set before Display. An empty title becomes the product's name. 0 seconds: no closing by itself;
  // above 65 counts as 65; above 32 the interval does not fit its 16 bits, and Display raises 6.
  std::string Title;
  std::string Message;
  std::uint8_t Seconds = 0;

  // The only proper way to show the window. `show_modally` puts it on the screen and returns when it has
  // gone.
  void Display(const std::function<void(frmMsg&)>& show_modally);

  widgets::Label lblMsg{"lblMsg"};

  // The window comes to the front. One that was not opened through Display says so and goes away.
  void Form_Activate();
  void cmdOK_Click() { Unload(); }
  void TimerClose_Timer() { Unload(); }

 private:
  void OnUnload() override;
  void Form_Load();

  AppState& app_;
  bool displayed_ = false;
  std::unique_ptr<platform::Timer> TimerClose;
};

}  // namespace zendrix::core
