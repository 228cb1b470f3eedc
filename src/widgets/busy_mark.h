// Keeps a mark set for as long as it lives: work is under way that must not begin a second time, also when
// the event loop runs meanwhile.
#pragma once

namespace zendrix::widgets {

class BusyMark {
 public:
  explicit BusyMark(bool& mark) : mark_(mark) { mark_ = true; }
  ~BusyMark() { mark_ = false; }
  BusyMark(const BusyMark&) = delete;
  BusyMark& operator=(const BusyMark&) = delete;

 private:
  bool& mark_;
};

}  // namespace zendrix::widgets
