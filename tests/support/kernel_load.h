// Load for what listens to the kernel, in tests and benchmarks: programs that are started and connections
// that are made, by the number.
#pragma once

#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace zendrix::test {

// The pid of the started program, -1 when it could not be started.
inline pid_t Spawn(std::string program) {
  pid_t pid = -1;
  char* const arguments[] = {program.data(), nullptr};
  char* const environment[] = {nullptr};
  return posix_spawn(&pid, program.c_str(), nullptr, nullptr, arguments, environment) == 0 ? pid : -1;
}

// Address number `number` of 198.18.0.0/15, the network for measurements (RFC 2544).
inline sockaddr_in MeasuredAddress(int number, std::uint16_t port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(0xC6120001 + static_cast<std::uint32_t>(number));
  return address;
}

// Puts this process into a network namespace of its own, in which each of these addresses is its own: nothing
// leaves the computer. False when it may not.
inline bool EnterOwnNetwork() {
  if (unshare(CLONE_NEWNET) != 0) return false;
  const int handle = socket(AF_INET, SOCK_DGRAM, 0);
  ifreq request = {};
  std::strcpy(request.ifr_name, "lo");
  sockaddr_in address = MeasuredAddress(0, 0);
  std::memcpy(&request.ifr_addr, &address, sizeof address);
  bool done = ioctl(handle, SIOCSIFADDR, &request) == 0;
  address.sin_addr.s_addr = htonl(0xFFFE0000);
  std::memcpy(&request.ifr_netmask, &address, sizeof address);
  done = done && ioctl(handle, SIOCSIFNETMASK, &request) == 0;
  request.ifr_flags = IFF_UP | IFF_RUNNING;
  done = done && ioctl(handle, SIOCSIFFLAGS, &request) == 0;
  close(handle);
  return done;
}

// A socket that listens on the port of all addresses; -1 when there is none to be had.
inline int ListenOn(std::uint16_t port) {
  const int listening = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in any = MeasuredAddress(0, port);
  any.sin_addr.s_addr = htonl(INADDR_ANY);
  const bool done =
      bind(listening, reinterpret_cast<sockaddr*>(&any), sizeof any) == 0 && listen(listening, 64) == 0;
  return done ? listening : -1;
}

// Connects to that address, where this process listens, and closes both ends.
inline bool ConnectOnce(int listening, const sockaddr_in& address) {
  const int handle = socket(AF_INET, SOCK_STREAM, 0);
  const bool done = connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  if (done) close(accept(listening, nullptr, nullptr));
  close(handle);
  return done;
}

}  // namespace zendrix::test
