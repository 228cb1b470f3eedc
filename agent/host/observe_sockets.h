// Open ports and connections of the network tables, each with the program that holds it where the host lets
// the Agent see it (root sees all, a user his own).
#pragma once

#include <vector>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"
#include "agent/host/observe_processes.h"

namespace zendrix::agent {

// Listening ports as "port:program-path" ("port" alone when the program cannot be told), then connections as
// "address:port:program-path". A connection's port is the one that names the service: the remote one, or the
// local one when the connection came in on a port that listens here. Connections within the computer are
// left out.
std::vector<Item> ObserveSockets(HostView& host, const std::vector<Process>& processes);

}  // namespace zendrix::agent
