// What the alert list and its details pane ask of the alert logic: the user's decisions, the contributing
// events, the page of an alert.
//
// None but the two decisions may serve the event loop: the list calls them while it holds a cursor on the
// event table.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "alerts/answer.h"

namespace zendrix::alerts {

// The alert that a decision is about. It travels with the user's click: by the time that anybody acts,
// another alert may be the one looked up last, and the file may have been replaced, so that the ID names
// another row.
struct ListedAlert {
  std::string id;        // of its row, decimal
  std::string date_utc;  // of its row
  std::string text;      // what the list shows of it
};

// An alert and its events as the wizard explains them. It is a copy of what was looked up once, which no
// later lookup changes; the services outlive it.
struct Explanation {
  std::size_t events = 0;  // beside the alert itself
  // The page of the alert (0) or of one of its events (1 to `events`), as it is shown.
  std::function<std::string(std::size_t index)> page;
};

class AlertServices {
 public:
  virtual ~AlertServices() = default;

  // Reads the decisions kept on disk; called once, before the first list is built.
  virtual void LoadChkAlrColl() = 0;
  // The decision on the alert with this DateUTC: nothing when undecided, a text ending in "A" when it was
  // blocked, any other text when it was allowed.
  virtual std::optional<std::string> Decision(const std::string& date_utc) = 0;
  // Whether the Agent acted on one of the events that contributed to the alert with this ID.
  virtual bool HasDetails(const std::string& id) = 0;
  // Empties the contributing events looked up last.
  virtual void ForgetNotableInfo() = 0;
  // The page that explains the alert with this ID; empty when there is none.
  virtual std::string RenderDetails(const std::string& id) = 0;
  // Looks the alert up for the wizard; one that is not in the table any more has no events.
  virtual Explanation Explain(const ListedAlert& alert) = 0;
  // Keeps what the wizard has come to, that the alert is normal (allow) or not (block), as the list's mark
  // and nowhere else. An earlier mark of the same kind stays.
  virtual void Conclude(Answer answer, const ListedAlert& alert) = 0;
  // The user's answer through the list's menu, to the alert of this row: asks, and on Yes files and keeps it.
  // Returns whether the user said Yes. Shows message boxes, so the event loop runs.
  virtual bool DecideFromMenu(Answer answer, const ListedAlert& alert) = 0;
  // The user's answer through the page's own command, to the alert that the page explains. Shows message
  // boxes.
  virtual void DecideFromPage(Answer answer, const ListedAlert& alert) = 0;
};

}  // namespace zendrix::alerts
