// One line of text that the user edits. What happens to it comes in this order, and a view tells it so:
//   Enter          the keyboard came to it: its whole text is marked
//   Type, text     keys; one that the field does not take is dropped and reported, each change is announced
//   Leave          the keyboard is about to go to another control of the same window: a text that is not
//                  valid keeps it
// A validation may open a box and so serve the event loop. Leave does not ask a second time meanwhile: going
// to the box, or another form's doing under it, is no leaving.
#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "widgets/control.h"
#include "widgets/screen.h"

namespace zendrix::widgets {

class TextBox : public Control {
 public:
  explicit TextBox(std::string name) : Control(std::move(name)) {}

  // Announced whoever changed it, the user or the program.
  Observed<std::string> text;
  // Whether the field takes this character; without a rule it takes all. What a key may do besides typing
  // (moving, deleting) is no matter of the rule.
  std::function<bool(char key)> takes;
  // The most characters that the user may type; more are cut off. By default those that any view takes.
  std::size_t most = 32'767;
  // Whether the text is good enough to leave the field with.
  std::function<bool()> valid;

  Signal<> mark_all;  // asks the view to mark the whole text
  Signal<> taken;     // a key was taken, also one that changed nothing
  Signal<> refused;   // a key was dropped

  bool Takes(char key) const { return !takes || takes(key); }
  bool has_keyboard() const { return has_keyboard_; }

  // The user's acts.
  void Enter();
  // A view's editing: the text as it is now.
  void Edit(std::string now);
  // Keys at the end of the text; the backspace (8) takes its last character away.
  void Type(std::string_view keys);
  // False when the text keeps the keyboard, which is then asked for again.
  bool Leave();
  // The field went out of sight or use under the keyboard; nobody is asked.
  void Lose() { has_keyboard_ = false; }

 private:
  bool has_keyboard_ = false;
  bool leaving_ = false;
};

// The field takes digits only and beeps at any other key.
void TakeDigits(TextBox& box, Screen& screen);

// A command may come without taking the keyboard away from a field, by its access key for one. What the field
// that has the keyboard says to leaving it; true when none of them has it.
bool MayLeave(std::initializer_list<TextBox*> boxes);

}  // namespace zendrix::widgets
