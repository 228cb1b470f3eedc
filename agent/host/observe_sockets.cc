#include "agent/host/observe_sockets.h"

#include <map>
#include <set>

#include "agent/host/parse_network.h"
#include "agent/host/places.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kTableLimit = 8U << 20U;

using Owners = std::map<std::uint64_t, const Process*>;  // by inode

std::vector<Socket> ReadSockets(HostView& host) {
  std::vector<Socket> sockets;
  for (const char* path : {"/proc/net/tcp", "/proc/net/tcp6"}) {
    const auto text = host.ReadText(path, kTableLimit);
    if (!text) continue;
    const auto table = ParseSocketTable(*text);
    sockets.insert(sockets.end(), table.begin(), table.end());
  }
  return sockets;
}

// Going through every open file of every process is the dear part, so it ends with the last wanted inode.
Owners FindOwners(HostView& host, const std::vector<Process>& processes, std::set<std::uint64_t> wanted) {
  Owners owners;
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

// Items by description: the same port is often open for both families, and its facts add up.
class ItemMap {
 public:
  Item& At(std::string_view monitor_name, const std::string& description) {
    Item& item = items_[description];
    item.monitor = monitor_name;
    item.description = description;
    return item;
  }
  void MoveTo(std::vector<Item>& list) {
    for (auto& [description, item] : items_) list.push_back(std::move(item));
  }

 private:
  std::map<std::string, Item> items_;
};

void NameProgram(Item& item, const Process* owner, Rule when_unknown) {
  if (owner == nullptr) {
    item.subject = item.description;
    item.rules.Add(when_unknown);
    return;
  }
  item.subject = ProgramName(*owner);
  item.program = owner->program.path;
  item.rules.Add(RulesOfProgram(owner->program));
}

std::string WithProgram(const std::string& place, const Process* owner) {
  return owner == nullptr ? place : place + ":" + ProgramName(*owner);
}

void AddPort(const Socket& socket, const Process* owner, ItemMap& ports) {
  // A port alone would not be shown: the console tells one only in front of a program.
  const std::string port = std::to_string(socket.local.port);
  Item& item = ports.At(monitor::kPorts, owner ? WithProgram(port, owner) : port + ":an unknown program");
  NameProgram(item, owner, Rule::kPortOfUnknownProgram);
  if (socket.local.reach == AddressReach::kLoopback) return;
  if (socket.local.reach == AddressReach::kAny) {
    item.rules.Add(Rule::kPortOpenToAll);
    item.identity = "all";  // a port that opens up to all networks is news
  }
  if (!IsUsualPort(socket.local.port)) item.rules.Add(Rule::kPortUnusual);
}

void AddConnection(const Socket& socket, const Process* owner, bool incoming, ItemMap& connections) {
  const std::uint16_t service = incoming ? socket.local.port : socket.remote.port;
  const std::string place = socket.remote.address + ":" + std::to_string(service);
  Item& item = connections.At(monitor::kConnections, WithProgram(place, owner));
  NameProgram(item, owner, Rule::kConnectionOfUnknownProgram);
  if (!incoming && !IsUsualPort(service)) item.rules.Add(Rule::kConnectionToUnusualPort);
}

}  // namespace

std::vector<Item> ObserveSockets(HostView& host, const std::vector<Process>& processes) {
  const std::vector<Socket> sockets = ReadSockets(host);
  std::set<std::uint64_t> wanted;
  std::set<std::uint16_t> listening;
  for (const Socket& socket : sockets) {
    const bool listens = socket.state == SocketState::kListening;
    if (listens) listening.insert(socket.local.port);
    if ((listens || IsConnection(socket)) && socket.inode != 0) wanted.insert(socket.inode);
  }
  const Owners owners = FindOwners(host, processes, std::move(wanted));
  ItemMap ports;
  ItemMap connections;
  for (const Socket& socket : sockets) {
    const auto owner = owners.find(socket.inode);
    const Process* process = owner == owners.end() ? nullptr : owner->second;
    if (socket.state == SocketState::kListening) AddPort(socket, process, ports);
    if (IsConnection(socket)) {
      AddConnection(socket, process, listening.contains(socket.local.port), connections);
    }
  }
  std::vector<Item> items;
  ports.MoveTo(items);
  connections.MoveTo(items);
  return items;
}

}  // namespace zendrix::agent
