// Which ports listen and which connections stand, kept up from the kernel's records, each with the program
// that began it. Several sockets of equal description are one item, which comes with the first and goes with
// the last. A connection that came in belongs to whoever listens on its port; when several programs do, it
// belongs to none that could be named.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "agent/host/observe_sockets.h"
#include "agent/sources/kernel_records.h"
#include "agent/sources/process_table.h"
#include "agent/sources/source.h"

namespace zendrix::agent {

class SocketTable {
 public:
  static constexpr std::size_t kMostSockets = 100'000;

  // `processes` outlives the object. The network namespace is the Agent's own, the one that /proc/net shows.
  SocketTable(ProcessTable& processes, std::uint64_t own_network)
      : processes_(processes), own_network_(own_network) {}

  void Take(const SocketSeen& seen, std::vector<Observation>& into);
  // Compares with the host's tables. All records up to this moment have been taken. `processes` gives what
  // runs, and is asked only when there are strangers.
  void Compare(HostView& host, const std::function<const std::vector<Process>&()>& processes,
               ProgramNamer& namer, std::int64_t now_ns, std::vector<Observation>& into);
  // A connection of the own network namespace ended. One that nobody knew of came and went; the program is
  // that which listens on its port, if any.
  void TakeEnd(const Socket& socket, std::int64_t now_ns, std::vector<Observation>& into);
  // A socket listens on a port that the kernel had yet to choose: only a look can tell which.
  bool WantsLook() const { return wants_look_; }
  // Sockets that found no place here.
  std::uint64_t overflow() const { return overflow_; }
  std::size_t size() const { return entries_.size(); }

 private:
  using Number = std::uint64_t;                  // of an entry, never used again
  using Owner = std::shared_ptr<const Program>;  // null: cannot be told
  struct Entry {
    std::string item_key;
    std::uint64_t socket = 0;  // 0: not known, since it is older than we are
    std::uint64_t inode = 0;   // 0: none
    std::string pair;          // local and remote end; empty when the local port was not known
    std::uint64_t network = 0;
    std::optional<std::uint16_t> listens_on;
    Owner owner;
  };
  struct Counted {
    Item item;
    std::size_t sockets = 0;
  };

  static std::string PairOf(const Endpoint& local, const Endpoint& remote);
  std::optional<Number> Known(std::uint64_t inode, const std::string& pair, std::uint64_t network) const;
  std::optional<Number> Known(const SocketSeen& seen, std::string& pair) const;
  Owner ListenerOn(std::uint64_t network, std::uint16_t port) const;
  bool IsListenedOn(std::uint64_t network, std::uint16_t port) const;
  void Add(Entry entry, Item item, std::int64_t at_ns, std::vector<Observation>& into);
  void Remove(Number number, std::int64_t at_ns, std::vector<Observation>& into);
  void Adopt(const Socket& socket, const Owner& owner, bool incoming, std::int64_t now_ns,
             std::vector<Observation>& into);

  ProcessTable& processes_;
  const std::uint64_t own_network_;
  Number next_ = 1;
  std::unordered_map<Number, Entry> entries_;
  std::unordered_map<std::uint64_t, Number> by_socket_;
  std::unordered_map<std::uint64_t, Number> by_inode_;
  std::unordered_map<std::string, Number> by_pair_;  // those of the own network namespace
  std::map<std::pair<std::uint64_t, std::uint16_t>, std::vector<Number>> listening_;
  std::unordered_map<std::string, Counted> items_;
  bool wants_look_ = false;
  std::uint64_t overflow_ = 0;
};

}  // namespace zendrix::agent
