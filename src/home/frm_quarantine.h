// frmQuarantine: what Block has put away, and the way back. It follows the quarantine while it is open. Paths
// and hashes stand as plain text.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/app_state.h"
#include "platform/family_libraries.h"
#include "platform/message_loop.h"
#include "widgets/form.h"
#include "widgets/label.h"
#include "widgets/list_view.h"

namespace zendrix::home {

class frmQuarantine : public widgets::Form {
 public:
  explicit frmQuarantine(core::AppState& app);
  ~frmQuarantine() override { Unload(); }

  // Looks at the quarantine; the list changes only when that has.
  void Follow();
  // Asks, and on Yes puts the file of the selected row back in its place and says what came of it.
  void qRestore_Click();
  void qClose_Click() { Unload(); }

  widgets::Label lblAbout{"lblAbout"};
  widgets::ListView lvQuarantine{"lvQuarantine"};
  // The selected file in full, or why the list cannot be had.
  widgets::Label lblEntry{"lblEntry"};
  widgets::Label qRestore{"qRestore", "Restore..."};
  widgets::Label qClose{"qClose", "Close"};

 private:
  void OnLoad() override;
  void OnUnload() override;
  void Rebuild(const std::string& selected);
  void ShowEntry();
  const platform::QuarantineEntry* Selected() const;
  std::string MomentOf(std::int64_t seconds) const;
  std::string AlertOf(const std::string& date_utc) const;

  core::AppState& app_;
  std::vector<platform::QuarantineEntry> entries_;  // newest first
  std::string failure_;
  std::unique_ptr<platform::Timer> timer_;
};

}  // namespace zendrix::home
