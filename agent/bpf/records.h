// What the kernel programs (zendrix.bpf.c) tell the Agent: the records of their ring buffer, in the machine's
// own byte order. Compiled by both sides, so it is C. A record is one of the structures below; an exec record
// is followed by its path. Everything in a record but kind, times and numbers is chosen by whoever runs the
// program. Readers copy a record before they look at it and believe no length in it (kernel_records.h).
#pragma once

#ifdef __cplusplus
#include <linux/types.h>
#endif

enum RecordKind {
  kRecordExec = 1,  // a process runs another program now
  kRecordFork,      // a process came, a copy of its parent so far
  kRecordExit,      // a process ended with the last of its threads
  kRecordSocket,    // a TCP socket's state changed
  kRecordModule,    // the kernel loads a module
  kRecordKinds      // one more than the last
};

// Of ExecRecord
enum ExecFlag {
  kExecUnlinked = 1,  // the file has no name any more, or never had one
  kExecDetached = 2,  // the file stands in no folder: made in memory
  kExecPathCut = 4,   // the path is too long; its beginning is missing
  kExecLinkless = 8,  // no link of the file is left in its file system
};

// Begins every record. A process is its pid (as the first namespace numbers it) and its start, nanoseconds of
// CLOCK_BOOTTIME.
struct RecordHead {
  __u32 kind;
  __u32 pid;  // of the process that did it
  __u64 time_ns;
  __u64 start_ns;
};

enum { kCommSize = 16 };

// Behind it `path_size` bytes: the names of the path from the last to the first, a zero byte behind each.
struct ExecRecord {
  struct RecordHead head;
  __u64 inode;
  __u32 device;           // major number << 20 | minor number
  __u32 mount_namespace;  // of the file, not of the process: an open file may be handed on; 0: of none
  __u32 flags;            // ExecFlag
  __u32 path_size;
  __u32 parent;
  __u32 zero;
  char comm[kCommSize];
};

// The process is the new one.
struct ForkRecord {
  struct RecordHead head;
  __u32 parent;
  __u32 zero;
  char comm[kCommSize];
};

struct ExitRecord {
  struct RecordHead head;
};

// States as include/net/tcp_states.h of the kernel numbers them
enum TcpState { kTcpEstablished = 1, kTcpSynSent = 2, kTcpSynReceived = 3, kTcpListen = 10 };

// The process is whoever ran when the state changed: it is the socket's own when the socket begins to connect
// or to listen, otherwise by chance.
struct SocketRecord {
  struct RecordHead head;
  __u64 socket;  // tells sockets apart as long as they live
  __u64 inode;   // as /proc/net/tcp shows it; 0 when it has none
  __u32 network_namespace;
  __u16 family;      // AF_INET or AF_INET6
  __u16 local_port;  // 0 when the kernel has yet to choose one
  __u16 remote_port;
  __u8 old_state;
  __u8 new_state;
  __u8 local[16];  // an IPv4 address takes the first four bytes
  __u8 remote[16];
  __u8 kernel;  // 1: it was a thread of the kernel that connects or listens
  __u8 zero[3];
};

enum { kModuleNameSize = 56 };

// The process is the one that asked for it.
struct ModuleRecord {
  struct RecordHead head;
  char name[kModuleNameSize];
};

// A path's names, each up to 255 bytes with a zero byte behind it.
enum { kPathRoom = 4096, kNameRoom = 256 };
