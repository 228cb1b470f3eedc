#include "home/frm_quarantine.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "alerts/quarantine.h"
#include "core/moments.h"
#include "core/path_text.h"

namespace zendrix::home {

namespace {

constexpr std::int64_t kFollowMs = 2500;
constexpr char kAbout[] =
    "Files that Block has put away. They can do no harm here. Restore puts a file back where it was.";
constexpr char kUnreadable[] = "The quarantine cannot be read.";
constexpr char kEmpty[] = "Nothing is in quarantine.";
constexpr char kRestored[] = "The file was put back in its place.";
constexpr char kNotRestored[] = "The file could not be put back in its place.";

// "7 bytes", "12 KB", "3 MB": begun units count.
std::string SizeText(std::uint64_t bytes) {
  constexpr std::uint64_t kUnit = 1024;
  if (bytes == 1) return "1 byte";
  if (bytes < kUnit) return std::to_string(bytes) + " bytes";
  const auto begun = [&](std::uint64_t unit) { return std::to_string(bytes / unit + (bytes % unit != 0)); };
  return bytes < kUnit * kUnit ? begun(kUnit) + " KB" : begun(kUnit * kUnit) + " MB";
}

}  // namespace

frmQuarantine::frmQuarantine(core::AppState& app) : Form(app.forms, "frmQuarantine"), app_(app) {
  title = "Quarantine";
  lblAbout.caption = kAbout;
  lvQuarantine.columns = std::vector<widgets::ListColumn>{{"File", 0.32, 0},
                                                          {"Put away", 0.215, 0},
                                                          {"Alert", 0.215, 0},
                                                          {"Size", 0.10, 0},
                                                          {"SHA-256", 0.15, 0}};
  lvQuarantine.selection_changed.ConnectForever([this] { ShowEntry(); });
  lvQuarantine.item_clicked.ConnectForever([this](widgets::ListView::Slot) { ShowEntry(); });
  qRestore.clicked.ConnectForever([this] { qRestore_Click(); });
  qClose.clicked.ConnectForever([this] { qClose_Click(); });
  timer_ = app_.seams.timers.MakeTimer([this] { Follow(); });
}

void frmQuarantine::OnLoad() {
  Follow();
  Rebuild("");
  timer_->Start(kFollowMs);
}

void frmQuarantine::OnUnload() {
  timer_->Stop();
}

void frmQuarantine::Follow() {
  alerts::QuarantineContents now = alerts::ReadQuarantine(app_.seams.family);
  if (now.entries == entries_ && now.failure == failure_) return;
  const platform::QuarantineEntry* const selected = Selected();
  const std::string name = selected ? selected->name : "";
  entries_ = std::move(now.entries);
  failure_ = std::move(now.failure);
  Rebuild(name);
}

// The entry that was selected stays so; when it has gone, the newest is.
void frmQuarantine::Rebuild(const std::string& selected) {
  {
    const widgets::ListBatch batch(lvQuarantine);
    lvQuarantine.Clear();
    for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
      const auto slot = lvQuarantine.InsertTop(entry->name, core::PathText(entry->path), 0, entry->alert);
      if (!slot) continue;
      lvQuarantine.AddSubItem(*slot, MomentOf(entry->when));
      lvQuarantine.AddSubItem(*slot, AlertOf(entry->alert));
      lvQuarantine.AddSubItem(*slot, SizeText(entry->size));
      lvQuarantine.AddSubItem(*slot, entry->sha256);
    }
    const auto kept = lvQuarantine.Find(selected);
    lvQuarantine.Select(kept ? kept : lvQuarantine.first_visible());
  }
  ShowEntry();
}

const platform::QuarantineEntry* frmQuarantine::Selected() const {
  const auto slot = lvQuarantine.selected();
  if (!slot) return nullptr;
  const std::string& name = lvQuarantine.in_slot(*slot).key;
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [&](const auto& entry) { return entry.name == name; });
  return found == entries_.end() ? nullptr : &*found;
}

void frmQuarantine::ShowEntry() {
  const platform::QuarantineEntry* const entry = Selected();
  qRestore.enabled = entry != nullptr;
  lblEntry.caption =
      entry ? core::PathText(entry->path) + "\r\nSHA-256: " + entry->sha256 : std::string(failure_);
  lvQuarantine.empty_text = failure_.empty() ? kEmpty : kUnreadable;
}

// Anything may have changed while the question stood open: the entry is known by its name alone.
void frmQuarantine::qRestore_Click() {
  const platform::QuarantineEntry* const entry = Selected();
  if (!entry || !enabled) return;
  const std::string name = entry->name;
  const std::string question = "Put this file back in its place?\r\n" + core::PathText(entry->path) +
                               "\r\nAn alert named it: only restore what you know to be harmless.";
  auto& boxes = app_.seams.message_boxes;
  const auto said =
      boxes.Show({app_.ProductName, question, platform::BoxIcon::kQuestion, platform::BoxButtons::kYesNo});
  if (said != platform::BoxAnswer::kYes || !loaded()) return;
  const alerts::RestoreOutcome outcome = alerts::RestoreFromQuarantine(app_.seams.family, name);
  Follow();
  const std::string told = !outcome.told.empty() ? outcome.told : outcome.restored ? kRestored : kNotRestored;
  boxes.Show({app_.ProductName, told,
              outcome.restored ? platform::BoxIcon::kInformation : platform::BoxIcon::kExclamation,
              platform::BoxButtons::kOk});
}

std::string frmQuarantine::MomentOf(std::int64_t seconds) const {
  if (seconds < 0 || seconds > std::numeric_limits<std::int32_t>::max()) return "";
  return core::DisplayTime(static_cast<std::int32_t>(seconds), app_.DateOrder, app_.seams.family,
                           app_.seams.locale.Current());
}

// An alert as the alert list shows it, by its time.
std::string frmQuarantine::AlertOf(const std::string& date_utc) const {
  std::int64_t seconds = 0;
  const char* const end = date_utc.data() + date_utc.size();
  const auto [stop, error] = std::from_chars(date_utc.data(), end, seconds);
  return error == std::errc() && stop == end ? MomentOf(seconds) : date_utc;
}

}  // namespace zendrix::home
