#include "agent/host/observe_sockets.h"

#include <map>
#include <optional>
#include <set>

#include "agent/host/places.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kSocketTableLimit = 8U << 20U;

// Items by description: the same port is often open for both families, and its facts add up.
class ItemMap {
 public:
  void Add(Item item) {
    const auto [at, is_new] = items_.try_emplace(item.description, item);
    if (is_new) return;
    at->second.rules.Add(item.rules);
    if (!item.identity.empty()) at->second.identity = std::move(item.identity);
  }
  void MoveTo(std::vector<Item>& list) {
    for (auto& [description, item] : items_) list.push_back(std::move(item));
  }

 private:
  std::map<std::string, Item> items_;
};

void NameOwner(Item& item, const Program* owner, Rule when_unknown) {
  if (owner == nullptr) {
    item.subject = item.description;
    item.rules.Add(when_unknown);
    return;
  }
  item.subject = owner->subject;
  item.program = HostPathOf(*owner);
  item.rules.Add(RulesOfProgram(owner->file));
}

}  // namespace

std::vector<Socket> ReadSockets(HostView& host) {
  // A third of the time that the text takes.
  if (auto asked = host.Sockets()) return std::move(*asked);
  std::vector<Socket> sockets;
  for (const char* path : {"/proc/net/tcp", "/proc/net/tcp6"}) {
    const auto text = host.ReadText(path, kSocketTableLimit);
    if (!text) continue;
    const auto table = ParseSocketTable(*text);
    sockets.insert(sockets.end(), table.begin(), table.end());
  }
  return sockets;
}

// Going through every open file of every process is the dear part, so it ends with the last wanted inode.
SocketOwners FindSocketOwners(HostView& host, const std::vector<Process>& processes,
                              std::set<std::uint64_t> wanted) {
  SocketOwners owners;
  for (const Process& process : processes) {
    if (wanted.empty()) break;
    const std::string folder = "/proc/" + std::to_string(process.stat.pid) + "/fd";
    for (const std::string& name : host.List(folder)) {
      const auto target = host.ReadLink(folder + "/" + name);
      const auto inode = target ? ParseSocketInode(*target) : std::nullopt;
      if (inode && wanted.erase(*inode) == 1) owners[*inode] = &process;
    }
  }
  return owners;
}

bool IsConnection(const Socket& socket) {
  return (socket.state == SocketState::kEstablished || socket.state == SocketState::kConnecting) &&
         socket.remote.reach == AddressReach::kOther;
}

Item PortItem(const Endpoint& local, const Program* owner) {
  Item item;
  item.monitor = monitor::kPorts;
  // A port alone would not be shown: the console tells one only in front of a program.
  item.description = std::to_string(local.port) + ":" + (owner ? owner->name : "an unknown program");
  NameOwner(item, owner, Rule::kPortOfUnknownProgram);
  if (local.reach == AddressReach::kLoopback) return item;
  if (local.reach == AddressReach::kAny) {
    item.rules.Add(Rule::kPortOpenToAll);
    item.identity = "all";  // a port that opens up to all networks is news
  }
  if (!IsUsualPort(local.port)) item.rules.Add(Rule::kPortUnusual);
  return item;
}

Item ConnectionItem(const Endpoint& local, const Endpoint& remote, bool incoming, const Program* owner) {
  const std::uint16_t service = incoming ? local.port : remote.port;
  Item item;
  item.monitor = monitor::kConnections;
  item.description = remote.address + ":" + std::to_string(service) + (owner ? ":" + owner->name : "");
  NameOwner(item, owner, Rule::kConnectionOfUnknownProgram);
  if (!incoming && !IsUsualPort(service)) item.rules.Add(Rule::kConnectionToUnusualPort);
  return item;
}

std::vector<Item> ObserveSockets(HostView& host, const std::vector<Process>& processes) {
  const std::vector<Socket> sockets = ReadSockets(host);
  std::set<std::uint64_t> wanted;
  std::set<std::uint16_t> listening;
  for (const Socket& socket : sockets) {
    const bool listens = socket.state == SocketState::kListening;
    if (listens) listening.insert(socket.local.port);
    if ((listens || IsConnection(socket)) && socket.inode != 0) wanted.insert(socket.inode);
  }
  const SocketOwners owners = FindSocketOwners(host, processes, std::move(wanted));
  ItemMap ports;
  ItemMap connections;
  for (const Socket& socket : sockets) {
    const auto found = owners.find(socket.inode);
    std::optional<Program> owner;
    if (found != owners.end()) owner = ProgramOf(*found->second);
    const Program* program = owner ? &*owner : nullptr;
    if (socket.state == SocketState::kListening) ports.Add(PortItem(socket.local, program));
    if (IsConnection(socket)) {
      const bool incoming = listening.contains(socket.local.port);
      connections.Add(ConnectionItem(socket.local, socket.remote, incoming, program));
    }
  }
  std::vector<Item> items;
  ports.MoveTo(items);
  connections.MoveTo(items);
  return items;
}

}  // namespace zendrix::agent
