// A system bus that tells what a test gives it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "agent/sources/bus_stream.h"

namespace zendrix::agent {

// What the test keeps of streams that their source owns.
struct BusScript {
  std::vector<BusSession> sessions;  // that there are when it is opened
  std::string refusal;               // of the next openings
  std::vector<BusNews> waiting;
  int opened = 0;

  void Came(BusSession session) { waiting.push_back({BusNews::Kind::kSession, std::move(session), ""}); }
  void Ended(const std::string& id) {
    waiting.push_back({BusNews::Kind::kSessionEnded, {id, "", "", "", ""}, ""});
  }
  void UnitsChanged() { waiting.push_back({BusNews::Kind::kUnitsChanged, {}, ""}); }
  void Gone(const std::string& reason) { waiting.push_back({BusNews::Kind::kGone, {}, reason}); }

  OpenedBus Open();
};

class RecordedBus : public BusStream {
 public:
  explicit RecordedBus(BusScript& script) : script_(script) {}
  std::vector<BusNews> Read() override { return std::exchange(script_.waiting, {}); }

 private:
  BusScript& script_;
};

inline OpenedBus BusScript::Open() {
  ++opened;
  if (!refusal.empty()) return {nullptr, refusal};
  waiting.clear();
  for (const BusSession& session : sessions) Came(session);
  return {std::make_unique<RecordedBus>(*this), ""};
}

}  // namespace zendrix::agent
