// What the Agent has told, as the helper believes it.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>

#include "act/alert_search.h"

namespace zendrix::act {

enum class Told {
  kYes,
  kNo,
  kUnreadable,  // there is no file, or none that can be believed
};

class AgentWord {
 public:
  virtual ~AgentWord() = default;
  virtual Told Tells(const ShownEvent& event) = 0;
  // `description` becomes the alert's own.
  virtual Told TellsAlert(const ShownAlert& alert, std::string& description) = 0;
};

// The Agent's monitoring file. It is believed when it is a plain file of the Agent's user or of the
// superuser that nobody else may write to. Links are not followed.
class AgentFile : public AgentWord {
 public:
  // The Agent begins a new file long before that.
  static constexpr std::size_t kLargest = std::size_t{64} << 20;

  AgentFile(std::string path, uid_t agent) : path_(std::move(path)), agent_(agent) {}
  Told Tells(const ShownEvent& event) override;
  Told TellsAlert(const ShownAlert& alert, std::string& description) override;

 private:
  Told Search(RowSearch& search) const;

  const std::string path_;
  const uid_t agent_;
};

}  // namespace zendrix::act
