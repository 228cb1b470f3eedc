// Open ports and connections of the network tables, each with the program that holds it where the host lets
// the Agent see it (root sees all, a user his own).
#pragma once

#include <map>
#include <set>
#include <vector>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"
#include "agent/host/observe_processes.h"
#include "agent/host/parse_network.h"

namespace zendrix::agent {

// The sockets of the network namespace that the Agent is in.
std::vector<Socket> ReadSockets(HostView& host);

// Who holds the wanted sockets open, by inode.
using SocketOwners = std::map<std::uint64_t, const Process*>;
SocketOwners FindSocketOwners(HostView& host, const std::vector<Process>& processes,
                              std::set<std::uint64_t> wanted);

// Whether it leads, or is to lead, to another computer.
bool IsConnection(const Socket& socket);

// One listening port or one connection. `owner` is null when the program cannot be told.
Item PortItem(const Endpoint& local, const Program* owner);
Item ConnectionItem(const Endpoint& local, const Endpoint& remote, bool incoming, const Program* owner);

// Listening ports as "port:program-path" ("port" alone when the program cannot be told), then connections as
// "address:port:program-path". A connection's port is the one that names the service: the remote one, or the
// local one when the connection came in on a port that listens here. Connections within the computer are
// left out.
std::vector<Item> ObserveSockets(HostView& host, const std::vector<Process>& processes);

}  // namespace zendrix::agent
