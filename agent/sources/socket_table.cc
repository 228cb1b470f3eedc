#include "agent/sources/socket_table.h"

#include <algorithm>
#include <set>
#include <unordered_set>
#include <utility>

namespace zendrix::agent {
namespace {

// What Compare of snapshots holds for one and the same.
std::string SocketKeyOf(const Item& item) {
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

std::optional<SocketTable::Number> SocketTable::Known(std::uint64_t inode, const std::string& pair,
                                                      std::uint64_t network) const {
  if (inode != 0) {
    const auto found = by_inode_.find(inode);
    if (found != by_inode_.end()) return found->second;
  }
  if (pair.empty() || network != own_network_) return {};
  const auto found = by_pair_.find(pair);
  return found == by_pair_.end() ? std::nullopt : std::optional(found->second);
}

// `pair` is made only when it is needed.
std::optional<SocketTable::Number> SocketTable::Known(const SocketSeen& seen, std::string& pair) const {
  const auto found = by_socket_.find(seen.socket);
  if (found != by_socket_.end()) return found->second;
  if (seen.event != SocketEvent::kListens) pair = PairOf(seen.Local(), seen.Remote());
  return Known(seen.inode, pair, seen.network_namespace);
}

// The one program that listens there; null when there is none or more than one.
SocketTable::Owner SocketTable::ListenerOn(std::uint64_t network, std::uint16_t port) const {
  const auto found = listening_.find({network, port});
  if (found == listening_.end()) return {};
  Owner only;
  for (const Number number : found->second) {
    const Owner& owner = entries_.at(number).owner;
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
  entry.item_key = SocketKeyOf(item);
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
  std::string pair;
  const auto known = Known(seen, pair);
  if (seen.event == SocketEvent::kEnded) {
    if (known) Remove(*known, seen.by.seen_ns, into);
    return;
  }
  if (known && entries_.at(*known).socket == 0) {
    // A look found it before its own record came.
    entries_.at(*known).socket = seen.socket;
    by_socket_[seen.socket] = *known;
    return;
  }
  if (known) Remove(*known, seen.by.seen_ns, into);  // its end was lost
  const bool listens = seen.event == SocketEvent::kListens;
  const bool incoming = seen.event == SocketEvent::kAccepted;
  const Endpoint local = seen.Local();
  const Endpoint remote = seen.Remote();
  if (!listens && remote.reach != AddressReach::kOther) return;
  if (listens && local.port == 0) {
    wants_look_ = true;
    return;
  }
  Entry entry;
  entry.socket = seen.socket;
  entry.inode = seen.inode;
  entry.pair = listens || !pair.empty() ? std::move(pair) : PairOf(local, remote);
  entry.network = seen.network_namespace;
  if (listens) entry.listens_on = local.port;
  if (incoming) {
    entry.owner = ListenerOn(seen.network_namespace, local.port);
  } else if (seen.by_kernel) {
    entry.owner = std::make_shared<const Program>(UnknownProgram("the kernel itself"));
  } else {
    entry.owner = processes_.ProgramOf(seen.by);
  }
  Item item = listens ? PortItem(local, entry.owner.get())
                      : ConnectionItem(local, remote, incoming, entry.owner.get());
  Add(std::move(entry), std::move(item), seen.by.seen_ns, into);
}

void SocketTable::Adopt(const Socket& socket, const Owner& owner, bool incoming, std::int64_t now_ns,
                        std::vector<Observation>& into) {
  const bool listens = socket.state == SocketState::kListening;
  Entry entry;
  entry.inode = socket.inode;
  if (!listens) entry.pair = PairOf(socket.local, socket.remote);
  entry.network = own_network_;
  if (listens) entry.listens_on = socket.local.port;
  entry.owner = owner;
  Item item = listens ? PortItem(socket.local, owner.get())
                      : ConnectionItem(socket.local, socket.remote, incoming, owner.get());
  Add(std::move(entry), std::move(item), now_ns, into);
}

void SocketTable::TakeEnd(const Socket& socket, std::int64_t now_ns, std::vector<Observation>& into) {
  // What only listened, or never did anything, has no other end; the next comparison sees it go.
  if (socket.remote.port == 0 || socket.remote.reach != AddressReach::kOther) return;
  if (const auto known = Known(socket.inode, PairOf(socket.local, socket.remote), own_network_)) {
    Remove(*known, now_ns, into);
    return;
  }
  const bool incoming = IsListenedOn(own_network_, socket.local.port);
  const Number number = next_;
  Adopt(socket, incoming ? ListenerOn(own_network_, socket.local.port) : nullptr, incoming, now_ns, into);
  Remove(number, now_ns, into);
}

void SocketTable::Compare(HostView& host, const std::function<const std::vector<Process>&()>& processes,
                          ProgramNamer& namer, std::int64_t now_ns, std::vector<Observation>& into) {
  wants_look_ = false;
  std::unordered_set<Number> there;
  std::vector<Socket> strangers;
  std::set<std::uint64_t> wanted;
  for (const Socket& socket : ReadSockets(host)) {
    const bool listens = socket.state == SocketState::kListening;
    if (!listens && !IsConnection(socket)) continue;
    const std::string pair = listens ? std::string() : PairOf(socket.local, socket.remote);
    if (const auto known = Known(socket.inode, pair, own_network_)) {
      there.insert(*known);
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
  SocketOwners owners;
  if (!wanted.empty()) owners = FindSocketOwners(host, processes(), std::move(wanted));
  for (const Socket& socket : strangers) {
    const auto found = owners.find(socket.inode);
    Owner owner;
    if (found != owners.end()) owner = std::make_shared<const Program>(namer.NameOf(*found->second));
    const bool incoming =
        socket.state != SocketState::kListening && IsListenedOn(own_network_, socket.local.port);
    if (!owner && incoming) owner = ListenerOn(own_network_, socket.local.port);
    Adopt(socket, owner, incoming, now_ns, into);
  }
}

}  // namespace zendrix::agent
