// The fields of the kernel's types that the programs read, and no others. Offsets are the running kernel's
// own: the loader looks each field up by its name (preserve_access_index), so the layout here means nothing.
#pragma once

typedef unsigned char __u8;
typedef unsigned short __u16;
typedef unsigned int __u32;
typedef unsigned long long __u64;
typedef signed char __s8;
typedef short __s16;
typedef int __s32;
typedef long long __s64;
typedef __u16 __be16;
typedef __u32 __be32;
typedef __u64 __be64;
typedef __u32 __wsum;

// As include/uapi/linux/bpf.h numbers them
enum bpf_map_type { BPF_MAP_TYPE_PERCPU_ARRAY = 6, BPF_MAP_TYPE_RINGBUF = 27 };
enum { BPF_RB_NO_WAKEUP = 1, BPF_RB_FORCE_WAKEUP = 2 };

#pragma clang attribute push(__attribute__((preserve_access_index)), apply_to = record)

struct super_block {
  __u32 s_dev;
};

struct inode {
  unsigned long i_ino;
  unsigned int i_nlink;
  struct super_block* i_sb;
};

struct hlist_bl_node {
  struct hlist_bl_node** pprev;
};

struct qstr {
  const unsigned char* name;
};

struct dentry {
  struct hlist_bl_node d_hash;
  struct dentry* d_parent;
  struct qstr d_name;
};

struct vfsmount {
  struct dentry* mnt_root;
};

struct ns_common {
  unsigned int inum;
};

struct mnt_namespace {
  struct ns_common ns;
};

struct mount {
  struct mount* mnt_parent;
  struct dentry* mnt_mountpoint;
  struct vfsmount mnt;
  struct mnt_namespace* mnt_ns;
};

struct path {
  struct vfsmount* mnt;
  struct dentry* dentry;
};

struct file {
  struct path f_path;
  struct inode* f_inode;
};

struct linux_binprm {
  struct file* file;
};

typedef struct {
  int counter;
} atomic_t;

struct signal_struct {
  atomic_t live;
};

struct task_struct {
  int pid;
  int tgid;
  unsigned int flags;
  __u64 start_boottime;
  struct task_struct* group_leader;
  struct task_struct* real_parent;
  struct signal_struct* signal;
  char comm[16];
};

struct net {
  struct ns_common ns;
};

typedef struct {
  struct net* net;
} possible_net_t;

struct in6_addr {
  union {
    __u8 u6_addr8[16];
  } in6_u;
};

struct sock_common {
  __be32 skc_daddr;
  __be32 skc_rcv_saddr;
  __be16 skc_dport;
  __u16 skc_num;
  unsigned short skc_family;
  possible_net_t skc_net;
  struct in6_addr skc_v6_daddr;
  struct in6_addr skc_v6_rcv_saddr;
};

struct socket {
  struct file* file;
};

struct sock {
  struct sock_common __sk_common;
  __u16 sk_protocol;
  struct socket* sk_socket;
};

struct module {
  char name[56];
};

#pragma clang attribute pop
