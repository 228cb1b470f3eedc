// A list of listeners. A connection lasts until its Connection is dropped or the signal dies, whichever is
// first. Listeners run in the order in which they connected, on the caller's thread.
//
// Re-entry is allowed: during a round a listener may connect others (they are called from the next round on),
// disconnect any (it is not called again, not even in this round), raise the same signal (the nested round
// calls every listener, then the outer one continues) or destroy the signal (no further listener is called).
// An exception of a listener ends the round and reaches the caller of Raise.
#pragma once

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
    if (this == &other) return *this;
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
  ~Signal() {
    for (const auto& listener : round_->listeners) listener->alive = false;
  }
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  [[nodiscard]] Connection Connect(std::function<void(Args...)> listener) {
    const auto& added = Add(std::move(listener));
    return Connection(std::shared_ptr<bool>(added, &added->alive));
  }

  // A listener for the signal's whole life.
  void ConnectForever(std::function<void(Args...)> listener) { Add(std::move(listener)); }

  void Raise(Args... args) const {
    const Turn turn(round_);
    auto& listeners = turn.round->listeners;
    const std::size_t count = listeners.size();
    for (std::size_t i = 0; i < count; ++i) {
      const auto listener = listeners[i];  // a listener that disconnects itself lives to its end
      if (listener->alive) listener->call(args...);
    }
  }

 private:
  struct Listener {
    bool alive = true;
    std::function<void(Args...)> call;
  };
  struct Round {
    std::vector<std::shared_ptr<Listener>> listeners;
    int depth = 0;  // rounds that are under way, one inside the other

    // A round counts by index, so nothing is removed while one is under way.
    void Sweep() {
      if (depth == 0) std::erase_if(listeners, [](const auto& listener) { return !listener->alive; });
    }
  };
  // One round; it keeps the list when the signal is destroyed meanwhile.
  struct Turn {
    explicit Turn(std::shared_ptr<Round> of) : round(std::move(of)) {
      round->Sweep();
      ++round->depth;
    }
    ~Turn() { --round->depth; }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    const std::shared_ptr<Round> round;
  };

  const std::shared_ptr<Listener>& Add(std::function<void(Args...)> listener) {
    round_->Sweep();
    return round_->listeners.emplace_back(std::make_shared<Listener>(Listener{true, std::move(listener)}));
  }

  std::shared_ptr<Round> round_ = std::make_shared<Round>();
};

}  // namespace zendrix::widgets
