#include "platform/memory/memory_instance_lock.h"

namespace zendrix::platform {

bool MemoryInstanceLock::Acquire(const std::string& name) {
  const auto [holder, taken] = registry_->holders.try_emplace(name, this);
  if (!taken) return holder->second == this;
  Release();
  held_ = name;
  return true;
}

void MemoryInstanceLock::Release() {
  if (held_.empty()) return;
  registry_->holders.erase(held_);
  held_.clear();
}

void MemoryInstanceLock::AskToComeForward(const std::string& name) {
  const auto holder = registry_->holders.find(name);
  if (holder == registry_->holders.end() || holder->second == this) return;
  ++holder->second->asked_;
  holder->second->loop_.Post([handler = holder->second->handler_] {
    if (*handler) (*handler)();
  });
}

}  // namespace zendrix::platform
