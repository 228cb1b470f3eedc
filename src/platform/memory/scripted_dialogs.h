// Dialogs that answer by themselves. Every request is written down. Questions take their answers from a
// queue; a question that nobody announced is a failure of the test, by default the exception
// std::logic_error. While a box is "open" the fake timers can be pumped, so that code runs under it as under
// a real box.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/dialogs.h"
#include "platform/memory/fake_timers.h"

namespace zendrix::platform {

class ScriptedBoxes : public MessageBoxes {
 public:
  explicit ScriptedBoxes(FakeTimers& timers) : timers_(timers) {}

  // The answer of the next question; several wait in order.
  void Answer(BoxAnswer answer) { answers_.push_back(answer); }
  // Every box from now on stays open for so long, while the timers go on.
  void StayOpenFor(std::int64_t milliseconds) { open_ms_ = milliseconds; }
  // Announced answers that no question has taken yet.
  std::size_t AnswersLeft() const { return answers_.size(); }
  // Texts of all boxes so far, in order.
  std::vector<std::string> Texts() const;

  // Requests in the order they were shown.
  std::vector<BoxRequest> shown;
  // Called while a box is open, after it was written down.
  std::function<void(const BoxRequest& request)> while_open;
  // Called for a question without an answer; when it returns, the answer is No.
  std::function<void(const BoxRequest& request)> on_unscripted;

  BoxAnswer Show(const BoxRequest& request) override;

 private:
  FakeTimers& timers_;
  std::deque<BoxAnswer> answers_;
  std::int64_t open_ms_ = 0;
};

class ScriptedFileDialogs : public FileDialogs {
 public:
  // The path that the next dialog gives; empty is a cancel. Without one the dialog is cancelled.
  void Choose(std::string path) { choices_.push_back(std::move(path)); }

  // Requests in the order they were shown.
  std::vector<FileRequest> shown;
  // Called while a dialog is open.
  std::function<void()> while_open;

  std::string Choose(const FileRequest& request) override;

 private:
  std::deque<std::string> choices_;
};

class ScriptedColourDialogs : public ColourDialogs {
 public:
  // The colour that the next dialog gives; nothing is a cancel. Without one the dialog is cancelled.
  void Choose(std::optional<std::uint32_t> colour) { choices_.push_back(colour); }

  // Requests in the order they were shown.
  std::vector<ColourRequest> shown;
  // Called while a dialog is open.
  std::function<void()> while_open;

  std::optional<std::uint32_t> Choose(const ColourRequest& request) override;

 private:
  std::deque<std::optional<std::uint32_t>> choices_;
};

}  // namespace zendrix::platform
