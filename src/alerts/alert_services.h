// What the alert list and its details pane ask of the alert logic: the user's decisions, the contributing
// events, the page of an alert, the pop-ups. Each answer has a default, "nothing known"; the list works with
// all of them.
//
// None but the two decisions may serve the message loop: the list calls them while it holds a cursor on the
// event table.
#pragma once

#include <optional>
#include <string>

#include "alerts/answer.h"
#include "store/event_table.h"

namespace zendrix::alerts {

class AlertServices {
 public:
  virtual ~AlertServices() = default;

  // Reads the decisions kept on disk; called once, before the first list is built.
  virtual void LoadChkAlrColl() {}
  // The decision on the alert with this DateUTC: nothing when undecided, a text ending in "A" when it was
  // blocked, any other text when it was allowed.
  virtual std::optional<std::string> Decision(const std::string& date_utc) {
    (void)date_utc;
    return std::nullopt;
  }
  // Whether the Agent acted on one of the events that contributed to the alert with this ID.
  virtual bool HasDetails(const std::string& id) {
    (void)id;
    return false;
  }
  // Empties the contributing events looked up last.
  virtual void ForgetNotableInfo() {}
  // Decides on a pop-up for the row under the cursor; `silent` is set while the list is built for the first
  // time.
  virtual void ShowAlertPopUp(const store::EventCursor& row, bool silent) {
    (void)row;
    (void)silent;
  }
  // The page that explains the alert with this ID; empty when there is none.
  virtual std::string RenderDetails(const std::string& id) {
    (void)id;
    return {};
  }
  // The user's answer through the list's menu, to the alert that was shown last: asks, and on Yes files and
  // keeps it. Returns whether the user said Yes. Shows message boxes, so the message loop runs.
  virtual bool DecideFromMenu(Answer answer, const std::string& item_text, const std::string& date_utc) {
    (void)answer;
    (void)item_text;
    (void)date_utc;
    return false;
  }
  // The user's answer through the page's own command, to the alert that was shown last. Shows message boxes.
  virtual void DecideFromPage(Answer answer) { (void)answer; }
};

}  // namespace zendrix::alerts
