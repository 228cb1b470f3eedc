// A thing on the screen as a screen reader knows it: role, name, text, states, actions. Everything is asked
// anew over the accessibility bus each time; what has gone answers with nothing.
#pragma once

#include <atspi/atspi.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/screen.h"

namespace zendrix::desktop {

class Accessible {
 public:
  // Takes the reference over.
  explicit Accessible(AtspiAccessible* object);

  // The program of this name, when it is on the bus.
  static std::optional<Accessible> Program(const std::string& name, int process);

  // The thing that got the focus last, as programs have told since the listening began.
  static void ListenForFocus();
  static std::optional<Accessible> Focused();

  std::string role() const;
  std::string name() const;
  std::string description() const;
  // What can be read: of a text its text, of everything else its name and description.
  std::string text() const;
  bool Is(AtspiStateType state) const;
  bool Showing() const { return Is(ATSPI_STATE_SHOWING); }
  std::vector<Accessible> Children() const;
  std::vector<std::string> Actions() const;
  // Does the action of that name, or the first when none is named; false when there is none.
  bool Act(const std::string& action = {}) const;
  bool TakeFocus() const;
  std::optional<double> Value() const;
  Place place() const;
  // Of a table; its headings are no row.
  int Rows() const;
  std::optional<Accessible> Cell(int row, int column) const;
  std::optional<Accessible> Heading(int column) const;

  // Depth first, this one included; what does not show is passed over with all that is in it. Stops when told
  // `true`.
  bool Walk(const std::function<bool(const Accessible&)>& visit) const;
  std::optional<Accessible> Find(const std::function<bool(const Accessible&)>& wanted) const;
  std::optional<Accessible> Find(const std::string& role, const std::string& name) const;
  // Role, name and states of everything that shows, a line each: for messages.
  std::string Tree() const;

 private:
  std::shared_ptr<AtspiAccessible> object_;
};

}  // namespace zendrix::desktop
