// The programs that run in the kernel. They only read; what they see goes into one ring buffer, from which
// the Agent takes it when it comes by. When little happens the first record behind its last visit wakes it; a
// wake-up for each event would cost the program that is just starting ten times as much. A record that finds
// no room is counted in `lost`.
//
// A program's path is put together here, name by name from the file up to the root of its mount namespace.
// That holds on every kernel, also where the hooks that may ask for a path are switched off, and a process
// that has changed its root cannot pass its own file for one of the host's.
#include "kernel_types.h"

#include <bpf/bpf_core_read.h>
#include <bpf/bpf_endian.h>
#include <bpf/bpf_helpers.h>
#include <bpf/bpf_tracing.h>

#include "records.h"

#define PF_KTHREAD 0x00200000
#define AF_INET 2
#define AF_INET6 10
#define IPPROTO_TCP 6
#define MOST_NAMES 200

// Tracing programs must declare a licence that the kernel knows as free; theirs is that of the whole project.
char free_license[] SEC("license") = "GPL";

// Read by the Agent in its own memory.
__u64 lost[kRecordKinds];

// Set by the Agent when it begins to read and little happens. Two processors that see it at once wake it
// twice, which does no harm.
__u32 must_wake;

struct {
  __uint(type, BPF_MAP_TYPE_RINGBUF);
  __uint(max_entries, 4 * 1024 * 1024);
} ring SEC(".maps");

struct ExecRoom {
  struct ExecRecord record;
  char path[kPathRoom + kNameRoom];
};

// A record with a path is larger than a program's stack. A processor runs one of these programs at a time.
struct {
  __uint(type, BPF_MAP_TYPE_PERCPU_ARRAY);
  __uint(max_entries, 1);
  __type(key, __u32);
  __type(value, struct ExecRoom);
} rooms SEC(".maps");

static __always_inline void Tell(const struct RecordHead* record, __u64 size) {
  const __u32 wakes = must_wake;
  if (wakes) must_wake = 0;
  const __u64 flags = wakes ? BPF_RB_FORCE_WAKEUP : BPF_RB_NO_WAKEUP;
  if (bpf_ringbuf_output(&ring, (void*)record, size, flags) != 0 && record->kind < kRecordKinds)
    __sync_fetch_and_add(&lost[record->kind], 1);
}

static __always_inline void Begin(struct RecordHead* head, __u32 kind, struct task_struct* task) {
  head->kind = kind;
  head->pid = task->tgid;
  head->time_ns = bpf_ktime_get_boot_ns();
  head->start_ns = task->group_leader->start_boottime;
}

// Where a walk from a file to the root stands.
struct Walk {
  struct dentry* at;
  struct dentry* root;  // of the mount that we are in
  struct mount* mount;
  __u32 used;
  __u32 flags;
  __u32 complete;
};

static __always_inline struct mount* WholeOf(struct vfsmount* seen) {
  return (struct mount*)((char*)seen - bpf_core_field_offset(struct mount, mnt));
}

// One step up; 1 when there is no further.
static long Step(__u32 number, void* context) {
  struct Walk* walk = context;
  const __u32 first = 0;
  struct ExecRoom* room = bpf_map_lookup_elem(&rooms, &first);
  if (!room) return 1;
  struct dentry* at = walk->at;
  struct mount* mount = walk->mount;
  if (at == walk->root) {
    struct mount* above = BPF_CORE_READ(mount, mnt_parent);
    if (above == mount || !above) {
      walk->complete = 1;
      return 1;
    }
    walk->at = BPF_CORE_READ(mount, mnt_mountpoint);
    walk->mount = above;
    walk->root = BPF_CORE_READ(above, mnt.mnt_root);
    return 0;
  }
  struct dentry* parent = BPF_CORE_READ(at, d_parent);
  const unsigned char* name = BPF_CORE_READ(at, d_name.name);
  const __u32 used = walk->used;
  if (used > kPathRoom) return 1;
  const long length = bpf_probe_read_kernel_str(room->path + used, kNameRoom, name);
  if (length <= 0 || length > kNameRoom) return 1;
  walk->used = used + length;
  if (parent == at || !parent) {
    walk->flags |= kExecDetached;
    walk->complete = 1;
    return 1;
  }
  walk->at = parent;
  return 0;
}

SEC("tp_btf/sched_process_exec")
int BPF_PROG(OnExec, struct task_struct* task, int old_pid, struct linux_binprm* binary) {
  const __u32 first = 0;
  struct ExecRoom* room = bpf_map_lookup_elem(&rooms, &first);
  if (!room) return 0;
  struct ExecRecord* record = &room->record;
  Begin(&record->head, kRecordExec, task);
  struct file* file = binary->file;
  struct inode* inode = file->f_inode;
  record->inode = inode->i_ino;
  record->device = inode->i_sb->s_dev;
  record->parent = task->real_parent->tgid;
  record->zero = 0;
  __builtin_memcpy(record->comm, task->comm, sizeof(record->comm));
  // Read as plain numbers, which is what they are once the loop has begun.
  struct dentry* at = BPF_CORE_READ(file, f_path.dentry);
  struct mount* mount = WholeOf(BPF_CORE_READ(file, f_path.mnt));
  struct Walk walk = {.at = at, .mount = mount};
  walk.root = BPF_CORE_READ(mount, mnt.mnt_root);
  record->mount_namespace = BPF_CORE_READ(mount, mnt_ns, ns.inum);
  if (at != walk.root && !BPF_CORE_READ(at, d_hash.pprev)) walk.flags |= kExecUnlinked;
  if (inode->i_nlink == 0) walk.flags |= kExecLinkless;
  bpf_loop(MOST_NAMES, Step, &walk, 0);
  if (!walk.complete) walk.flags |= kExecPathCut;
  const __u32 used = walk.used;
  if (used > sizeof(room->path)) return 0;
  record->flags = walk.flags;
  record->path_size = used;
  Tell(&record->head, sizeof(*record) + used);
  return 0;
}

SEC("tp_btf/sched_process_fork")
int BPF_PROG(OnFork, struct task_struct* parent, struct task_struct* child) {
  if (child->pid != child->tgid || (child->flags & PF_KTHREAD)) return 0;  // a thread
  struct ForkRecord record = {};
  Begin(&record.head, kRecordFork, child);
  record.parent = parent->tgid;
  __builtin_memcpy(record.comm, child->comm, sizeof(record.comm));
  Tell(&record.head, sizeof(record));
  return 0;
}

SEC("tp_btf/sched_process_exit")
int BPF_PROG(OnExit, struct task_struct* task) {
  if (task->signal->live.counter != 0 || (task->flags & PF_KTHREAD)) return 0;  // other threads go on
  struct ExitRecord record = {};
  Begin(&record.head, kRecordExit, task);
  Tell(&record.head, sizeof(record));
  return 0;
}

static __always_inline int IsLoopback(const struct SocketRecord* record) {
  if (record->family == AF_INET) return record->remote[0] == 127;
  const __u32* words = (const __u32*)record->remote;
  return words[0] == 0 && words[1] == 0 &&
         ((words[2] == 0 && words[3] == bpf_htonl(1)) ||
          (words[2] == bpf_htonl(0xFFFF) && record->remote[12] == 127));
}

// Told are the beginning and the end of listening and of a connection, outgoing ones from their first packet
// on. Connections within the computer are nobody's business.
static __always_inline int IsTold(int old_state, int new_state) {
  if (new_state == kTcpSynSent || new_state == kTcpListen) return 1;
  if (new_state == kTcpEstablished) return old_state == kTcpSynReceived;
  return old_state == kTcpEstablished || old_state == kTcpSynSent ||
         (old_state == kTcpListen && new_state != kTcpSynReceived);
}

SEC("tp_btf/inet_sock_set_state")
int BPF_PROG(OnSocketState, struct sock* sk, int old_state, int new_state) {
  if (!IsTold(old_state, new_state) || sk->sk_protocol != IPPROTO_TCP) return 0;
  struct SocketRecord record = {};
  record.family = sk->__sk_common.skc_family;
  record.local_port = sk->__sk_common.skc_num;
  record.remote_port = bpf_ntohs(sk->__sk_common.skc_dport);
  if (record.family == AF_INET) {
    const __u32 local = sk->__sk_common.skc_rcv_saddr;
    const __u32 remote = sk->__sk_common.skc_daddr;
    __builtin_memcpy(record.local, &local, sizeof(local));
    __builtin_memcpy(record.remote, &remote, sizeof(remote));
  } else {
    BPF_CORE_READ_INTO(&record.local, sk, __sk_common.skc_v6_rcv_saddr);
    BPF_CORE_READ_INTO(&record.remote, sk, __sk_common.skc_v6_daddr);
  }
  if (old_state != kTcpListen && new_state != kTcpListen && IsLoopback(&record)) return 0;
  struct task_struct* task = bpf_get_current_task_btf();
  Begin(&record.head, kRecordSocket, task);
  record.kernel = (task->flags & PF_KTHREAD) != 0;
  record.socket = (__u64)(unsigned long)sk;
  record.inode = BPF_CORE_READ(sk, sk_socket, file, f_inode, i_ino);
  record.network_namespace = sk->__sk_common.skc_net.net->ns.inum;
  record.old_state = old_state;
  record.new_state = new_state;
  Tell(&record.head, sizeof(record));
  return 0;
}

// Not on every kernel: one without modules does not know the event, and the Agent leaves the program out.
SEC("tp_btf/module_load")
int BPF_PROG(OnModuleLoad, struct module* module) {
  struct ModuleRecord record = {};
  Begin(&record.head, kRecordModule, bpf_get_current_task_btf());
  bpf_probe_read_kernel_str(record.name, sizeof(record.name), module->name);
  Tell(&record.head, sizeof(record));
  return 0;
}
