#include "agent/sources/socket_table.h"

#include <algorithm>
#include <set>
#include <unordered_set>
#include <utility>

namespace zendrix::agent {
namespace {

// What Compare of snapshots holds for one and the same.
std::string KeyOf(const Item& item) {
  std::string key(item.monitor);
  key.append("\n").append(item.description).append("\n").append(item.identity);
  return key;
}

Observation Seen(Observation::Kind kind, std::int64_t at_ns, const Item& item) {
  Observation seen;
  seen.kind = kind;
  seen.seen_ns = at_ns;
  seen.item = item;
  return seen;
}

template <class Map, class Key>
void Drop(Map& map, const Key& key, std::uint64_t number) {
  const auto found = map.find(key);
  if (found != map.end() && found->second == number) map.erase(found);
}

}  // namespace

std::string SocketTable::PairOf(const Endpoint& local, const Endpoint& remote) {
  if (local.port == 0) return {};
  return local.address + " " + std::to_string(local.port) + " " + remote.address + " " +
         std::to_string(remote.port);
}

SocketTable::Entry* SocketTable::Known(std::uint64_t socket, std::uint64_t inode, const std::string& pair,
                                       std::uint64_t network, Number& number) {
  const auto give = [&](const auto& map, const auto& key) -> Entry* {
    const auto found = map.find(key);
    if (found == map.end()) return nullptr;
    number = found->second;
    return &entries_.at(number);
  };
  if (socket != 0) {
    if (Entry* entry = give(by_socket_, socket)) return entry;
  }
  if (inode != 0) {
    if (Entry* entry = give(by_inode_, inode)) return entry;
  }
  return pair.empty() || network != own_network_ ? nullptr : give(by_pair_, pair);
}

// The one program that listens there; no value when there is none or more than one.
std::optional<Program> SocketTable::ListenerOn(std::uint64_t network, std::uint16_t port) const {
  const auto found = listening_.find({network, port});
  if (found == listening_.end()) return {};
  std::optional<Program> only;
  for (const Number number : found->second) {
    const auto& owner = entries_.at(number).owner;
    if (!owner || (only && only->name != owner->name)) return {};
    only = owner;
  }
  return only;
}

bool SocketTable::IsListenedOn(std::uint64_t network, std::uint16_t port) const {
  return listening_.contains({network, port});
}

void SocketTable::Add(Entry entry, Item item, std::int64_t at_ns, std::vector<Observation>& into) {
  if (entries_.size() >= kMostSockets) {
    ++overflow_;
    return;
  }
  const Number number = next_++;
  entry.item_key = KeyOf(item);
  if (entry.socket != 0) by_socket_[entry.socket] = number;
  if (entry.inode != 0) by_inode_[entry.inode] = number;
  if (!entry.pair.empty() && entry.network == own_network_) by_pair_[entry.pair] = number;
  if (entry.listens_on) listening_[{entry.network, *entry.listens_on}].push_back(number);
  Counted& counted = items_[entry.item_key];
  if (counted.sockets++ == 0) {
    counted.item = std::move(item);
    into.push_back(Seen(Observation::Kind::kCame, at_ns, counted.item));
  }
  entries_.emplace(number, std::move(entry));
}

void SocketTable::Remove(Number number, std::int64_t at_ns, std::vector<Observation>& into) {
  const auto found = entries_.find(number);
  if (found == entries_.end()) return;
  const Entry entry = std::move(found->second);
  entries_.erase(found);
  Drop(by_socket_, entry.socket, number);
  Drop(by_inode_, entry.inode, number);
  Drop(by_pair_, entry.pair, number);
  if (entry.listens_on) {
    const auto place = listening_.find({entry.network, *entry.listens_on});
    std::erase(place->second, number);
    if (place->second.empty()) listening_.erase(place);
  }
  const auto counted = items_.find(entry.item_key);
  if (--counted->second.sockets > 0) return;
  into.push_back(Seen(Observation::Kind::kWent, at_ns, counted->second.item));
  items_.erase(counted);
}

void SocketTable::Take(const SocketSeen& seen, std::vector<Observation>& into) {
  const bool listens = seen.event == SocketEvent::kListens;
  std::string pair = listens ? std::string() : PairOf(seen.local, seen.remote);
  Number number = 0;
  Entry* known = Known(seen.socket, seen.inode, pair, seen.network_namespace, number);
  if (seen.event == SocketEvent::kEnded) {
    if (known) Remove(number, seen.by.seen_ns, into);
    return;
  }
  if (known && known->socket == 0) {
    // A look found it before its own record came.
    known->socket = seen.socket;
    by_socket_[seen.socket] = number;
    return;
  }
  if (known) Remove(number, seen.by.seen_ns, into);  // its end was lost
  if (!listens && seen.remote.reach != AddressReach::kOther) return;
  if (listens && seen.local.port == 0) {
    wants_look_ = true;
    return;
  }
  Entry entry;
  entry.socket = seen.socket;
  entry.inode = seen.inode;
  entry.pair = std::move(pair);
  entry.network = seen.network_namespace;
  if (listens) entry.listens_on = seen.local.port;
  const bool incoming = seen.event == SocketEvent::kAccepted;
  if (incoming) {
    entry.owner = ListenerOn(seen.network_namespace, seen.local.port);
  } else if (seen.by_kernel) {
    entry.owner = UnknownProgram("the kernel itself");
  } else {
    entry.owner = processes_.ProgramOf(seen.by);
  }
  const Program* owner = entry.owner ? &*entry.owner : nullptr;
  Item item =
      listens ? PortItem(seen.local, owner) : ConnectionItem(seen.local, seen.remote, incoming, owner);
  Add(std::move(entry), std::move(item), seen.by.seen_ns, into);
}

void SocketTable::Adopt(const Socket& socket, const std::optional<Program>& owner, bool incoming,
                        std::int64_t now_ns, std::vector<Observation>& into) {
  const bool listens = socket.state == SocketState::kListening;
  Entry entry;
  entry.inode = socket.inode;
  if (!listens) entry.pair = PairOf(socket.local, socket.remote);
  entry.network = own_network_;
  if (listens) entry.listens_on = socket.local.port;
  entry.owner = owner;
  const Program* program = owner ? &*owner : nullptr;
  Item item = listens ? PortItem(socket.local, program)
                      : ConnectionItem(socket.local, socket.remote, incoming, program);
  Add(std::move(entry), std::move(item), now_ns, into);
}

void SocketTable::Compare(HostView& host, const std::vector<Process>& processes, ProgramNamer& namer,
                          std::int64_t now_ns, std::vector<Observation>& into) {
  wants_look_ = false;
  std::unordered_set<Number> there;
  std::vector<Socket> strangers;
  std::set<std::uint64_t> wanted;
  for (const Socket& socket : ReadSockets(host)) {
    const bool listens = socket.state == SocketState::kListening;
    if (!listens && !IsConnection(socket)) continue;
    const std::string pair = listens ? std::string() : PairOf(socket.local, socket.remote);
    Number number = 0;
    if (Known(0, socket.inode, pair, own_network_, number)) {
      there.insert(number);
      continue;
    }
    strangers.push_back(socket);
    if (socket.inode != 0) wanted.insert(socket.inode);
  }
  std::vector<Number> gone;
  for (const auto& [number, entry] : entries_) {
    // What has neither inode nor known ends is the kernel's own, and no table could tell that it went.
    const bool can_be_found = entry.network == own_network_ && (entry.inode != 0 || !entry.pair.empty());
    if (can_be_found && !there.contains(number)) gone.push_back(number);
  }
  std::sort(gone.begin(), gone.end());
  for (const Number number : gone) Remove(number, now_ns, into);
  // Ports first, so that a connection that came in finds who listens.
  std::stable_partition(strangers.begin(), strangers.end(),
                        [](const Socket& socket) { return socket.state == SocketState::kListening; });
  const SocketOwners owners = FindSocketOwners(host, processes, std::move(wanted));
  for (const Socket& socket : strangers) {
    const auto found = owners.find(socket.inode);
    std::optional<Program> owner;
    if (found != owners.end()) owner = namer.NameOf(*found->second);
    const bool incoming =
        socket.state != SocketState::kListening && IsListenedOn(own_network_, socket.local.port);
    if (!owner && incoming) owner = ListenerOn(own_network_, socket.local.port);
    Adopt(socket, owner, incoming, now_ns, into);
  }
}

}  // namespace zendrix::agent
