#include "agent/sources/module_looks.h"

#include <algorithm>
#include <utility>

#include "agent/host/parse_modules.h"
#include "agent/host/text.h"
#include "agent/score/rules.h"

namespace zendrix::agent {

ModuleLooks::ModuleLooks(HostView& host, platform::Clock& clock)
    : host_(host),
      clock_(clock),
      next_ms_(clock.MonotonicMs()),
      is_readable_(host.ReadText(kModulesFile, 1).has_value()) {}

SourceLevel ModuleLooks::level() const {
  if (!is_readable_) return {Level::kNone, "", "the list of loaded modules cannot be read"};
  return {Level::kPolling, "a look every " + std::to_string(kIntervalMs / 1000) + " s", ""};
}

void ModuleLooks::Drain(std::vector<Observation>& into) {
  const std::int64_t now = clock_.MonotonicMs();
  if (now < next_ms_) return;
  next_ms_ = std::max(next_ms_ + kIntervalMs, now);
  const auto text = host_.ReadText(kModulesFile, kModulesLimit);
  is_readable_ = text.has_value();
  if (!text) return;
  auto names = ParseModules(*text);
  for (const std::string& name : names) {
    if (!known_ || known_->contains(name)) continue;
    Observation observation;
    observation.kind = Observation::Kind::kHappened;
    observation.item.monitor = monitor::kSystem;
    observation.item.description = "kernel module " + CleanName(name) + " loaded";
    observation.item.subject = "kernel module " + CleanName(name);
    into.push_back(std::move(observation));
  }
  known_ = std::move(names);
}

}  // namespace zendrix::agent
