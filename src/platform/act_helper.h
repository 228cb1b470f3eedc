// The helper that acts where the user's own rights do not reach: files of others, programs of others. It asks
// the user for his consent by the desktop's own means, so a call may take as long as he does.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/family_libraries.h"
#include "platform/result.h"

namespace zendrix::platform {

struct ActAnswer {
  bool done = false;
  std::string sentence;  // of at most 255 bytes, for the user; of a list its lines
};

// An error says that there was no answer: kUnavailable where there is no such helper, kOther where it was
// asked and may still have acted.
class ActHelper {
 public:
  virtual ~ActHelper() = default;

  // Moves the file of the event to the helper's quarantine and ends its program.
  virtual Result<ActAnswer> Block(const QuarantineEvent& event) = 0;
  // Puts an entry of the list back in its place.
  virtual Result<ActAnswer> Allow(const std::string& entry) = 0;
  // As KorvessaIntermediateTypes tells its own list.
  virtual Result<ActAnswer> List() = 0;
  // For the Agent: what was blocked before with these contents (SHA-256) and is there again, with the
  // processes that run it. Nobody is asked.
  virtual Result<ActAnswer> BlockAgain(const std::string& path, const std::string& sha256,
                                       const std::vector<std::uint32_t>& processes) = 0;
  // Files the user's decision on the alert of this second (UTC) with this code with the Agent.
  virtual Result<ActAnswer> Decide(std::int64_t alert_second, const std::string& code, bool block) = 0;
  // Lays down the settings of e-mail, the contents of the SMTP file, for the mailer; none turn e-mail off.
  virtual Result<ActAnswer> SetMail(const std::string& settings) = 0;
};

}  // namespace zendrix::platform
