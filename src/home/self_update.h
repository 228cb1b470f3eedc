// Looks for a new version of the program in its folder, and offers or starts its installer. Where the program
// was installed by the system's package manager, that brings new versions: the log says so, and no file is
// looked at, let alone started.
#pragma once

#include "home/frm_new_update.h"
#include "widgets/reopened_window.h"

namespace zendrix::home {

class SelfUpdate {
 public:
  explicit SelfUpdate(UpdateNeeds needs) : needs_(needs), file_(needs.state, needs.log) {}
  SelfUpdate(const SelfUpdate&) = delete;
  SelfUpdate& operator=(const SelfUpdate&) = delete;

  // An update file of the running version has done its work and is deleted. Any other is offered, or started
  // at once where the user wants that. Does nothing while an earlier one is being started.
  void CheckUpdate();

  // The offer, when one was made; it may have unloaded since.
  frmNewUpdate* offer() { return offer_.get(); }

 private:
  void TellOfPackages();
  void Offer();
  void Install();

  UpdateNeeds needs_;
  UpdateFile file_;
  widgets::Reopened<frmNewUpdate> offer_;
  bool installing_ = false;
  bool told_of_packages_ = false;
};

}  // namespace zendrix::home
