// The helper on the system bus (act_names.h). Every call makes its own connection; when its time is over, the
// connection goes, and with it whatever the helper was still asking for.
#pragma once

#include <chrono>

#include "platform/act_helper.h"

namespace zendrix::platform {

struct ActDeadlines {
  // Long enough for a user who has to type a password.
  std::chrono::milliseconds asked = std::chrono::seconds(120);
  std::chrono::milliseconds list = std::chrono::seconds(5);
  // An alert waits so long at most.
  std::chrono::milliseconds again = std::chrono::seconds(4);
};

class LinuxActHelper : public ActHelper {
 public:
  explicit LinuxActHelper(ActDeadlines deadlines = {}) : deadlines_(deadlines) {}

  Result<ActAnswer> Block(const QuarantineEvent& event) override;
  Result<ActAnswer> Allow(const std::string& entry) override;
  Result<ActAnswer> List() override;
  Result<ActAnswer> BlockAgain(const std::string& path, const std::string& sha256,
                               const std::vector<std::uint32_t>& processes) override;
  Result<ActAnswer> Decide(std::int64_t alert_second, const std::string& code, bool block) override;
  Result<ActAnswer> SetMail(const std::string& settings) override;

 private:
  ActDeadlines deadlines_;
};

}  // namespace zendrix::platform
