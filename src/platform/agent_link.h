// What a console tells the Agent's services about. Installed, they are programs of other users that read none
// of this one's files: the user's decisions and his settings of e-mail reach them by the helper, which asks
// for his consent. In a folder that console and Agent share there is nothing to tell.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace zendrix::platform {

class AgentLink {
 public:
  // Gets one sentence for the user that says why it did not become known. Called on the user-interface
  // thread, at once or from the message loop, and not at all when everything went well.
  using OnTrouble = std::function<void(const std::string& sentence)>;

  virtual ~AgentLink() = default;
  // The decision on the alert of this second (UTC) with this code.
  virtual void Decide(std::int64_t alert_second, const std::string& code, bool block, OnTrouble trouble) = 0;
  // The contents of the SMTP file; empty when no alerts are to be mailed.
  virtual void SetMail(const std::string& settings, OnTrouble trouble) = 0;
};

// Where nobody needs to be told.
class NoAgentLink : public AgentLink {
 public:
  void Decide(std::int64_t, const std::string&, bool, OnTrouble) override {}
  void SetMail(const std::string&, OnTrouble) override {}
};

// It holds nothing, so one serves all.
inline AgentLink& NobodyToTell() {
  static NoAgentLink link;
  return link;
}

}  // namespace zendrix::platform
