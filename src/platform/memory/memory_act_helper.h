// A helper that answers as a test says and keeps what it was asked.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/act_helper.h"

namespace zendrix::platform {

class MemoryActHelper : public ActHelper {
 public:
  Result<ActAnswer> Block(const QuarantineEvent& event) override {
    return Note("Block " + event.monitor + " " + event.description + " " + event.event_utc + " " +
                    event.alert + (event.shown ? "" : " not shown"),
                block);
  }
  Result<ActAnswer> Allow(const std::string& entry) override { return Note("Allow " + entry, allow); }
  Result<ActAnswer> List() override { return Note("List", list); }
  Result<ActAnswer> BlockAgain(const std::string& path, const std::string& sha256,
                               const std::vector<std::uint32_t>& processes) override {
    std::string text = "BlockAgain " + path + " " + sha256;
    for (const std::uint32_t process : processes) text += " " + std::to_string(process);
    return Note(text, again);
  }
  Result<ActAnswer> Decide(std::int64_t alert_second, const std::string& code, bool blocks) override {
    return Note("Decide " + std::to_string(alert_second) + " " + code + (blocks ? " block" : " allow"),
                decide);
  }
  Result<ActAnswer> SetMail(const std::string& settings) override {
    return Note("SetMail " + settings, mail);
  }

  static Result<ActAnswer> Absent() { return Error{ErrorKind::kUnavailable, "no helper"}; }

  Result<ActAnswer> block = Absent(), allow = Absent(), list = Absent(), again = Absent(), decide = Absent(),
                    mail = Absent();
  std::vector<std::string> asked;

 private:
  Result<ActAnswer> Note(std::string what, const Result<ActAnswer>& answer) {
    asked.push_back(std::move(what));
    return answer;
  }
};

}  // namespace zendrix::platform
