#include "widgets/text_box.h"

#include <utility>

#include "widgets/busy_mark.h"

namespace zendrix::widgets {
namespace {

constexpr char kBackspace = '\b';

}  // namespace

void TextBox::Enter() {
  has_keyboard_ = true;
  mark_all.Raise();
}

void TextBox::Edit(std::string now) {
  has_keyboard_ = true;  // also when the field had it already as its window became the active one
  if (now.size() > most) now.resize(most);
  text = std::move(now);
}

void TextBox::Type(std::string_view keys) {
  for (const char key : keys) {
    const std::string& present = text;
    if (key == kBackspace) {
      text = present.substr(0, present.empty() ? 0 : present.size() - 1);
    } else if (Takes(key) && present.size() < most) {
      text = present + key;
    } else {
      refused.Raise();
      continue;
    }
    taken.Raise();
  }
}

bool TextBox::Leave() {
  if (leaving_) return true;
  const BusyMark leaving(leaving_);
  const bool may = !valid || valid();
  if (may)
    has_keyboard_ = false;
  else
    focus.Raise();
  return may;
}

void TakeDigits(TextBox& box, Screen& screen) {
  box.takes = [](char key) { return key >= '0' && key <= '9'; };
  box.refused.ConnectForever([&screen] { screen.beep.Raise(); });
}

bool MayLeave(std::initializer_list<TextBox*> boxes) {
  for (TextBox* box : boxes)
    if (box->has_keyboard()) return box->Leave();
  return true;
}

}  // namespace zendrix::widgets
