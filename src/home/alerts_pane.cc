// One row of the list per event of the monitor "Aggregation" whose risk reaches the level that the user chose
// to see and that the user's earlier decisions do not hide. The newest row stands on top; there is no other
// order.
#include "home/alerts_pane.h"

#include <algorithm>
#include <utility>

#include "alerts/monitor_catalogue.h"
#include "alerts/risk.h"
#include "core/desc_lookup.h"
#include "core/guards.h"
#include "core/moments.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"
#include "home/frm_more_info.h"
#include "home/frm_quarantine.h"

namespace zendrix::home {

namespace {

constexpr char kAlertMonitor[] = "Aggregation";
constexpr char kBlocked[] = "Blocked";
constexpr char kAllowed[] = "Allowed";
constexpr int kNarrowColumn = 700;  // twips

int PictureOfLevel(const std::string& level) {
  if (level == alerts::kNormal) return alerts::kPictureNormal;
  if (level == alerts::kSuspicious) return alerts::kPictureSuspicious;
  return alerts::kPictureIntrusion;
}

// An item's key is "K" and the ID of its row.
alerts::ListedAlert ListedIn(const widgets::ListRow& item) {
  return {item.key.substr(1), item.tag, item.text};
}

std::string TextOf(const store::EventCursor& row, store::Column column) {
  return std::string(row.Text(column));
}

int LevelOf(const std::string& text) {
  if (text == alerts::kIntrusion || text == alerts::kUnknown) return kImmediate;
  if (text == alerts::kSuspicious) return kAttention;
  return text == alerts::kNormal ? kGood : kUndecided;
}

}  // namespace

// Marks the list as busy for as long as a build runs.
class AlertsPane::ListBuild {
 public:
  explicit ListBuild(AlertsPane& pane) : busy_(pane.needs_.ListBusy), outer_(busy_) { busy_ = true; }
  // A build that came in while another one waits for the page leaves that one's mark.
  ~ListBuild() { busy_ = outer_; }
  ListBuild(const ListBuild&) = delete;
  ListBuild& operator=(const ListBuild&) = delete;

 private:
  bool& busy_;
  bool outer_;
};

AlertsPane::AlertsPane(AlertsNeeds needs)
    : needs_(std::move(needs)),
      app_(needs_.state),
      details_({needs_.state, needs_.log, needs_.alerts, needs_.screen}, sDesc) {
  sClearAll.tip = "Mark as deleted";
  sShowAll.tip = "Show also deleted alerts";
  sMoreInfo.enabled = false;
  lvAlerts.item_clicked.ConnectForever([this](widgets::ListView::Slot item) { lvAlerts_ItemClick(item); });
  lvAlerts.right_button_up.ConnectForever([this] { lvAlerts_MouseUp(); });
  mPopRNormal.clicked.ConnectForever([this] { mPopRNormal_Click(); });
  mPopRAbnormal.clicked.ConnectForever([this] { mPopRAbnormal_Click(); });
  sckShowAll.clicked.ConnectForever([this] { sckShowAll_Click(); });
  sClearAll.clicked.ConnectForever([this] { sClearAll_Click(); });
  sShowAll.clicked.ConnectForever([this] { sShowAll_Click(); });
  sMoreInfo.clicked.ConnectForever([this] { sMoreInfo_Click(); });
  sQuarantine.clicked.ConnectForever([this] { sQuarantine_Click(); });
}

void AlertsPane::CreateHeaderlvAlerts() {
  lvAlerts.columns = std::vector<widgets::ListColumn>{{"Time", 2.0 / 5, 0},
                                                      {"Event Type", 1 / 3.3, 0},
                                                      {"Status", 0, kNarrowColumn},
                                                      {"Details", 0, kNarrowColumn}};
}

void AlertsPane::LoadlvAlerts() {
  FillFromTable(true);
}

void AlertsPane::UpdatelvAlerts() {
  FillFromTable(false);
}

void AlertsPane::FillFromTable(bool whole) {
  ListBuild busy(*this);
  const std::string place = whole ? "frmNewUI:LoadlvAlerts" : "frmNewUI:UpdatelvAlerts";
  std::string remembered;
  bool filled = false;
  core::OrLog(needs_.log, place, [&] {
    const widgets::ListBatch batch(lvAlerts);
    // A reload may put a new table in place of this one while a row is shown; the clone keeps the old one
    // alive.
    const auto table = needs_.gKvlF.EventTable;
    if (!table) {
      lvAlerts.Clear();
      return;
    }
    store::EventCursor clone = table->Clone();
    clone.SetFilter(alerts::kAlertFilter);
    if (clone.Eof() || clone.Bof()) return;
    if (const auto selected = lvAlerts.selected()) remembered = lvAlerts.in_slot(*selected).key;
    if (whole && needs_.gKvlF.ReloadedFlag) {
      ClearAlertList();
      needs_.gKvlF.ReloadedFlag = false;
    }
    const int picture = alerts::GetImgNumH3(kAlertMonitor);
    if (whole)
      FillRows(clone, picture);
    else
      FillRowsBehind(clone, picture);
    filled = true;
  });
  core::OrLog(needs_.log, place, [&] {
    TellWhyEmpty();
    // Waits for the page; the views have the rows by now.
    if (filled) CloseBuild(remembered);
  });
  sMoreInfo.enabled = lvAlerts.size() > 0;
}

void AlertsPane::FillRows(store::EventCursor& clone, int picture) {
  for (; !clone.Eof(); clone.MoveNext()) {
    const auto decision = needs_.alerts.Decision(TextOf(clone, store::kDateUTC));
    const bool blocked = decision && decision->ends_with('A');
    if (blocked && !ShowBlockedAlerts) continue;
    AddRow(clone, picture, !decision ? "" : blocked ? kBlocked : kAllowed);
  }
}

void AlertsPane::FillRowsBehind(store::EventCursor& clone, int picture) {
  if (const auto last = needs_.gKvlF.LastBookmark) {
    if (*last >= clone.table().RowCount()) core::Raise(core::kBadCriterion);
    // The position may be that of a row which is no alert; the first alert behind it is where the new part
    // begins. The row itself is old, also when the user has cleared the list since.
    clone.MoveLast();
    while (!clone.Bof() && clone.bookmark() > *last) clone.MovePrevious();
    if (clone.Bof())
      clone.MoveFirst();
    else
      clone.MoveNext();
  }
  for (; !clone.Eof(); clone.MoveNext()) AddRow(clone, picture, "");
}

void AlertsPane::AddRow(const store::EventCursor& row, int picture, const std::string& status) {
  const auto& locale = app_.seams.locale.Current();
  const std::string change = TextOf(row, store::kChange);
  if (!alerts::ReachesShownRisk(change, app_.settings, locale)) return;
  const std::string id = std::to_string(row.ID());
  const std::string date_time = TextOf(row, store::kDateTime);
  const auto slot = lvAlerts.InsertTop("K" + id, date_time, picture, TextOf(row, store::kDateUTC));
  if (!slot) return;  // the row is in the list already
  const std::string level = alerts::GetRiskName(change, app_.settings, locale);
  lvAlerts.AddSubItem(*slot, level, PictureOfLevel(level));
  if (level != alerts::kNormal && level != alerts::kSuspicious) needs_.AttentionPending = true;
  const bool decided = !status.empty();
  if (decided) {
    lvAlerts.AddSubItem(*slot, status,
                        status == kBlocked ? alerts::kPictureBlocked : alerts::kPictureAllowed);
    needs_.AttentionPending = false;
  }
  if (needs_.alerts.HasDetails(id)) {
    if (!decided) lvAlerts.AddSubItem(*slot, "");
    lvAlerts.AddSubItem(*slot, "", alerts::kPictureDetails);
  }
  if (decided) return;
  if (level == alerts::kIntrusion) NoteIntrusion(date_time);
  needs_.ShowAlertPopUp(row);
}

// A date text that is no date stands in the list as the Agent wrote it. It tells no later moment, and it must
// not end the build either: whoever can write one such line would hide every alert behind it.
void AlertsPane::NoteIntrusion(const std::string& date_time) {
  const core::Date now = core::Now(app_.seams.clock, app_.seams.family);
  const auto moment = core::ReadDate(date_time, app_.seams.locale.Current(), core::LocalTimeOf(now).year);
  if (moment && *moment > LastIntrusionTime) LastIntrusionTime = *moment;
}

void AlertsPane::CloseBuild(const std::string& remembered) {
  if (!remembered.empty()) {
    const auto slot = lvAlerts.Find(remembered);
    if (slot) lvAlerts.Select(*slot);
  } else {
    ShowFirst();
  }
}

// An empty list is good news only when nothing was found, not when it was cleared or hides what there is.
void AlertsPane::TellWhyEmpty() {
  if (lvAlerts.size() > 0) return;
  const auto table = needs_.gKvlF.EventTable;
  if (!table || table->RowCount() == 0) {
    lvAlerts.empty_text = "Nothing has been recorded yet.";
    return;
  }
  store::EventCursor clone = table->Clone();
  const std::string since = " since " + TextOf(clone, store::kDateTime) + ".";
  clone.SetFilter(alerts::kAlertFilter);
  lvAlerts.empty_text = clone.Eof()
                            ? "Nothing suspicious was found" + since
                            : "No alert is on show: those recorded are cleared, or below the level to show.";
}

void AlertsPane::ShowFirst() {
  const auto first = lvAlerts.first_visible();
  if (!first) return;
  lvAlerts.Select(*first);
  lvAlerts_ItemClick(*first);
}

void AlertsPane::ShowRow(const std::string& key) {
  const auto slot = lvAlerts.Find(key);
  if (!slot) core::Raise(core::kElementNotFound);
  lvAlerts.Select(*slot);
  lvAlerts.reveal.Raise(*slot);
  lvAlerts_ItemClick(*slot);
}

void AlertsPane::ShowOpeningText() {
  details_.ShowText(core::DescAt(app_.Desc[0], 1));
}

void AlertsPane::ClearAlertList() {
  core::OrLog(needs_.log, "frmNewUI:ClearAlertList", [&] {
    lvAlerts.Clear();
    ShowOpeningText();
  });
}

void AlertsPane::lvAlerts_ItemClick(widgets::ListView::Slot item) {
  core::OrLog(needs_.log, "frmNewUI:lvAlerts_ItemClick",
              [&] { details_.ShowAlert(ListedIn(lvAlerts.in_slot(item))); });
}

void AlertsPane::lvAlerts_MouseUp() {
  if (lvAlerts.selected()) mPopReview.popup.Raise();
}

void AlertsPane::mPopRNormal_Click() {
  Decide(alerts::Answer::kAllow, "frmNewUI:mPopRNormal_Click");
}

void AlertsPane::mPopRAbnormal_Click() {
  Decide(alerts::Answer::kBlock, "frmNewUI:mPopRAbnormal_Click");
}

void AlertsPane::Decide(alerts::Answer answer, const char* procedure) {
  core::OrLog(needs_.log, procedure, [&] {
    const auto asked = lvAlerts.selected();
    if (!asked) return;
    const std::string key = lvAlerts.in_slot(*asked).key;
    const alerts::ListedAlert alert = ListedIn(lvAlerts.in_slot(*asked));
    const bool yes = needs_.alerts.DecideFromMenu(answer, alert);
    // The list may have been built anew while the question stood open, and the key be another alert's.
    const auto item = lvAlerts.Find(key);
    if (yes && item && lvAlerts.in_slot(*item).tag == alert.date_utc) {
      const bool blocked = answer == alerts::Answer::kBlock;
      const std::string mark = blocked ? kBlocked : kAllowed;
      const int picture = blocked ? alerts::kPictureBlocked : alerts::kPictureAllowed;
      if (lvAlerts.in_slot(*item).sub_items.size() >= 2)
        lvAlerts.SetSubItem(*item, 1, mark, picture);
      else
        lvAlerts.AddSubItem(*item, mark, picture);
    }
    if (const auto selected = lvAlerts.selected()) lvAlerts_ItemClick(*selected);
  });
}

void AlertsPane::sckShowAll_Click() {
  ShowBlockedAlerts = sckShowAll.checked;
  ClearAlertList();
  LoadlvAlerts();
  needs_.CheckRiskLevel();
}

void AlertsPane::sClearAll_Click() {
  ShowBlockedAlerts = false;
  ClearAlertList();
  TellWhyEmpty();
  needs_.alerts.ForgetNotableInfo();
  sMoreInfo.enabled = false;
  needs_.CheckRiskLevel();
}

void AlertsPane::sShowAll_Click() {
  ShowBlockedAlerts = true;
  ClearAlertList();
  LoadlvAlerts();
  needs_.CheckRiskLevel();
}

// A press that reaches the button past the open window counts for nothing, here and below.
void AlertsPane::sMoreInfo_Click() {
  core::OrLog(needs_.log, "frmNewUI:sMoreInfo_Click", [&] {
    if (!needs_.window.enabled) return;
    if (!lvAlerts.selected()) ShowFirst();
    const auto selected = lvAlerts.selected();
    if (selected) Analyze(ListedIn(lvAlerts.in_slot(*selected)));
  });
}

// Another row may be the selected one behind the window, and the file another one: the outcome is about the
// alert that was explained.
void AlertsPane::Analyze(const alerts::ListedAlert& alert) {
  WizardResult = -1;
  {
    frmMoreInfo wizard(app_, needs_.log, needs_.alerts.Explain(alert),
                       [this](std::int16_t result) { WizardResult = result; });
    app_.host().ShowModal(wizard, &needs_.window);
  }
  if (WizardResult == 0) needs_.alerts.Conclude(alerts::Answer::kAllow, alert);
  if (WizardResult == 1) needs_.alerts.Conclude(alerts::Answer::kBlock, alert);
  ClearAlertList();
  needs_.alerts.ForgetNotableInfo();
  LoadlvAlerts();
  needs_.CheckRiskLevel();
}

void AlertsPane::sQuarantine_Click() {
  core::OrLog(needs_.log, "frmNewUI:sQuarantine_Click", [&] {
    if (!needs_.window.enabled) return;
    frmQuarantine window(app_);
    app_.host().ShowModal(window, &needs_.window);
  });
}

std::int16_t AlertsPane::CheckAlrSta() {
  int level = kUndecided;
  core::OrLog(needs_.log, "frmNewUI:CheckAlrSta", [&] {
    for (std::size_t i = 0; i < lvAlerts.size(); ++i) {
      const widgets::ListRow& row = lvAlerts.at(i);
      const auto decision = needs_.alerts.Decision(row.tag);
      if (decision && !decision->ends_with('A')) continue;
      for (const widgets::SubItem& item : row.sub_items) level = std::max(level, LevelOf(item.text));
    }
    level = std::max(level, kGood);
    needs_.row.Flag.picture = FlagOf(level);
    StaImg.picture = FlagOf(level);
    sTitleDesc.caption = core::Replace(StatusText(app_, kAlertsView, level), "<countofalerts>",
                                       std::to_string(lvAlerts.size()));
    needs_.row.icDesc.caption = sTitleDesc.caption.Get();
  });
  return static_cast<std::int16_t>(level);
}

}  // namespace zendrix::home
