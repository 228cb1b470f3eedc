// A list of listeners. A connection lasts until its Connection is dropped or the signal dies, whichever is
// first. Listeners run in the order in which they connected, on the caller's thread; a listener may connect
// or disconnect others while the signal is being raised (new ones are called from the next time on).
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace zendrix::widgets {

// Holds one listener in place; movable, disconnects when destroyed.
class Connection {
 public:
  Connection() = default;
  explicit Connection(std::shared_ptr<bool> alive) : alive_(std::move(alive)) {}
  Connection(Connection&&) noexcept = default;
  Connection& operator=(Connection&& other) noexcept {
    Disconnect();
    alive_ = std::move(other.alive_);
    return *this;
  }
  ~Connection() { Disconnect(); }
  void Disconnect() {
    if (alive_) *alive_ = false;
    alive_.reset();
  }

 private:
  std::shared_ptr<bool> alive_;
};

template <class... Args>
class Signal {
 public:
  Signal() = default;
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  [[nodiscard]] Connection Connect(std::function<void(Args...)> listener) {
    auto alive = std::make_shared<bool>(true);
    listeners_->push_back({alive, std::move(listener)});
    return Connection(alive);
  }

  // A listener for the signal's whole life.
  void ConnectForever(std::function<void(Args...)> listener) {
    listeners_->push_back({std::make_shared<bool>(true), std::move(listener)});
  }

  void Raise(Args... args) const {
    const auto kept = listeners_;  // the signal may be destroyed by a listener
    std::erase_if(*kept, [](const Listener& listener) { return !*listener.alive; });
    const std::size_t count = kept->size();
    for (std::size_t i = 0; i < count && i < kept->size(); ++i) {
      const Listener listener = (*kept)[i];
      if (*listener.alive) listener.call(args...);
    }
  }

 private:
  struct Listener {
    std::shared_ptr<bool> alive;
    std::function<void(Args...)> call;
  };
  std::shared_ptr<std::vector<Listener>> listeners_ = std::make_shared<std::vector<Listener>>();
};

}  // namespace zendrix::widgets
