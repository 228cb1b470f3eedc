#include "agent/sources/process_notices.h"

#include <linux/cn_proc.h>
#include <linux/connector.h>
#include <linux/genetlink.h>
#include <linux/netlink.h>
#include <linux/taskstats.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace zendrix::agent {
namespace {

// The fields that say which file it was came with this version.
constexpr std::uint16_t kTellsFile = 12;
// Kernels with this one have fields in the middle that others do not have.
constexpr std::uint16_t kShifted = 15;

template <class Value>
bool Copy(std::string_view bytes, std::size_t at, Value& value) {
  if (bytes.size() < at || bytes.size() - at < sizeof value) return false;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return true;
}

template <class Structure>
std::string BytesOf(const Structure& structure) {
  return std::string(reinterpret_cast<const char*>(&structure), sizeof structure);
}

std::optional<ProcessNotice> ReadNotice(std::string_view body) {
  cn_msg head;
  if (!Copy(body, 0, head) || head.id.idx != CN_IDX_PROC || head.id.val != CN_VAL_PROC) return {};
  body.remove_prefix(sizeof head);
  body = body.substr(0, head.len);
  // The structure has no names for the kinds that hold on every version of it.
  std::uint32_t what = 0;
  ProcessNotice notice;
  notice.number = head.seq;
  constexpr std::size_t kData = offsetof(proc_event, event_data);
  if (!Copy(body, 0, what) || !Copy(body, offsetof(proc_event, cpu), notice.processor)) return {};
  std::uint32_t numbers[4] = {};
  const auto take = [&](std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      if (!Copy(body, kData + i * sizeof numbers[i], numbers[i])) return false;
    }
    return true;
  };
  switch (what) {
    case 0:  // PROC_EVENT_NONE
      if (!take(1)) return {};
      notice.kind = ProcessNotice::Kind::kAnswered;
      notice.error = numbers[0];
      break;
    case 0x00000001:  // PROC_EVENT_FORK: parent and its process, child and its process
      if (!take(4)) return {};
      notice.kind = ProcessNotice::Kind::kForked;
      notice.parent = numbers[1];
      notice.pid = numbers[3];
      notice.is_thread = numbers[2] != numbers[3];
      break;
    case 0x00000002:  // PROC_EVENT_EXEC: thread and process
      if (!take(2)) return {};
      notice.kind = ProcessNotice::Kind::kExecuted;
      notice.pid = numbers[1];
      break;
    case 0x80000000:  // PROC_EVENT_EXIT: thread and process
      if (!take(2)) return {};
      notice.kind = ProcessNotice::Kind::kEnded;
      notice.pid = numbers[1];
      notice.is_thread = numbers[0] != numbers[1];
      break;
    default:
      break;
  }
  return notice;
}

std::optional<LastProgram> ReadStats(std::string_view stats) {
  std::uint16_t version = 0;
  std::uint32_t process = 0;
  std::uint32_t parent = 0;
  LastProgram last;
  char comm[TS_COMM_LEN] = {};
  if (!Copy(stats, 0, version) || version < kTellsFile || version == kShifted) return {};
  if (!Copy(stats, offsetof(taskstats, ac_tgid), process) ||
      !Copy(stats, offsetof(taskstats, ac_ppid), parent) ||
      !Copy(stats, offsetof(taskstats, ac_comm), comm) ||
      !Copy(stats, offsetof(taskstats, ac_exe_dev), last.file.device) ||
      !Copy(stats, offsetof(taskstats, ac_exe_inode), last.file.inode)) {
    return {};
  }
  last.pid = process;
  last.parent = parent;
  last.comm.assign(comm, strnlen(comm, sizeof comm));
  if (last.pid == 0 || last.file.inode == 0) return {};
  return last;
}

std::string GenericQuestion(std::uint16_t family, std::uint8_t command, std::uint16_t flags,
                            std::string_view attributes) {
  genlmsghdr head = {};
  head.cmd = command;
  head.version = 1;
  return MessageText(family, static_cast<std::uint16_t>(NLM_F_REQUEST | flags),
                     BytesOf(head).append(attributes));
}

std::string_view BehindGenericHead(std::string_view body) {
  return body.substr(std::min(body.size(), sizeof(genlmsghdr)));
}

}  // namespace

std::vector<ProcessNotice> ReadProcessNotices(std::string_view datagram) {
  std::vector<ProcessNotice> notices;
  for (const NetlinkMessage& message : SplitMessages(datagram)) {
    if (auto notice = ReadNotice(message.body)) notices.push_back(*notice);
  }
  return notices;
}

std::string ProcessNoticesQuestion() {
  const std::uint32_t listen = PROC_CN_MCAST_LISTEN;
  cn_msg head = {};
  head.id.idx = CN_IDX_PROC;
  head.id.val = CN_VAL_PROC;
  head.len = sizeof listen;
  return MessageText(NLMSG_DONE, 0, BytesOf(head) + BytesOf(listen));
}

std::vector<LastProgram> ReadLastPrograms(std::string_view datagram, std::uint16_t family) {
  std::vector<LastProgram> programs;
  for (const NetlinkMessage& message : SplitMessages(datagram)) {
    if (message.type != family) continue;
    for (const NetlinkAttribute& part : SplitAttributes(BehindGenericHead(message.body))) {
      // What is summed up of a process with several threads says nothing of its file.
      if (part.type != TASKSTATS_TYPE_AGGR_PID) continue;
      for (const NetlinkAttribute& inner : SplitAttributes(part.value)) {
        if (inner.type != TASKSTATS_TYPE_STATS) continue;
        if (auto last = ReadStats(inner.value)) programs.push_back(std::move(*last));
      }
    }
  }
  return programs;
}

std::string TaskstatsFamilyQuestion() {
  constexpr std::string_view kName(TASKSTATS_GENL_NAME, sizeof TASKSTATS_GENL_NAME);
  return GenericQuestion(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, 0, AttributeText(CTRL_ATTR_FAMILY_NAME, kName));
}

std::optional<std::uint16_t> ReadTaskstatsFamily(std::string_view datagram) {
  for (const NetlinkMessage& message : SplitMessages(datagram)) {
    if (message.type != GENL_ID_CTRL) continue;
    for (const NetlinkAttribute& part : SplitAttributes(BehindGenericHead(message.body))) {
      std::uint16_t family = 0;
      if (part.type == CTRL_ATTR_FAMILY_ID && Copy(part.value, 0, family)) return family;
    }
  }
  return {};
}

std::string LastProgramsQuestion(std::uint16_t family, const std::string& processors) {
  const std::string_view with_nul(processors.c_str(), processors.size() + 1);
  return GenericQuestion(family, TASKSTATS_CMD_GET, NLM_F_ACK,
                         AttributeText(TASKSTATS_CMD_ATTR_REGISTER_CPUMASK, with_nul));
}

std::optional<int> ReadErrorNumber(std::string_view datagram) {
  for (const NetlinkMessage& message : SplitMessages(datagram)) {
    std::int32_t error = 0;
    if (message.type == NLMSG_ERROR && Copy(message.body, 0, error) && error <= 0 && error > -4096)
      return -error;
  }
  return {};
}

}  // namespace zendrix::agent
