// Instance locks of one simulated machine: objects that share a registry contend for its names. A holder
// that is destroyed lets go, as a process that ends.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/instance_lock.h"
#include "platform/memory/fake_timers.h"

namespace zendrix::platform {

class MemoryInstanceLock;

struct MemoryInstanceRegistry {
  std::map<std::string, MemoryInstanceLock*> holders;
};

class MemoryInstanceLock : public InstanceLock {
 public:
  // Requests reach the handler through `loop`.
  MemoryInstanceLock(FakeTimers& loop, std::shared_ptr<MemoryInstanceRegistry> registry)
      : loop_(loop), registry_(std::move(registry)) {}
  MemoryInstanceLock(const MemoryInstanceLock&) = delete;
  MemoryInstanceLock& operator=(const MemoryInstanceLock&) = delete;
  ~MemoryInstanceLock() override { Release(); }

  bool Acquire(const std::string& name) override;
  void Release() override;
  void AskToComeForward(const std::string& name) override;
  void OnAskedToComeForward(std::function<void()> handler) override { *handler_ = std::move(handler); }

  // Name of the lock that is held; empty when none is.
  const std::string& held() const { return held_; }
  // Requests of others that arrived here.
  int asked() const { return asked_; }

 private:
  FakeTimers& loop_;
  std::shared_ptr<MemoryInstanceRegistry> registry_;
  // Shared with calls that wait in the loop.
  std::shared_ptr<std::function<void()>> handler_ = std::make_shared<std::function<void()>>();
  std::string held_;
  int asked_ = 0;
};

}  // namespace zendrix::platform
