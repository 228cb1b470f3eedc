#include "agent/sources/kernel_records.h"

#include <gmock/gmock.h>
#include <sys/sysmacros.h>

#include "kernel_record_bytes.h"

namespace zendrix::agent {
namespace {

using namespace test_records;

template <class Seen>
std::optional<Seen> ReadAs(const std::string& bytes) {
  const auto record = ReadKernelRecord(bytes);
  if (!record || !std::holds_alternative<Seen>(*record)) return {};
  return std::get<Seen>(*record);
}

TEST(KernelRecords, ExecTellsWhoWhenAndWhat) {
  const auto seen = ReadAs<ExecSeen>(Exec{.parent = 12}.Bytes());
  ASSERT_TRUE(seen);
  EXPECT_EQ(seen->by.pid, 100U);
  EXPECT_EQ(seen->by.start_ticks, 7U);
  EXPECT_EQ(seen->by.seen_ns, 1000);
  EXPECT_EQ(seen->parent, 12U);
  EXPECT_EQ(seen->program.path, "/usr/bin/true");
  EXPECT_FALSE(seen->program.deleted);
  EXPECT_FALSE(seen->program.in_memory);
  EXPECT_FALSE(seen->path_cut);
  EXPECT_EQ(seen->file, (FileIdentity{makedev(8, 1), 55}));
  EXPECT_EQ(seen->mount_namespace, kHostMounts);
  EXPECT_EQ(seen->comm, "true");
}

TEST(KernelRecords, ProcessNameThatFillsItsFieldIsNotReadBeyondIt) {
  EXPECT_EQ(ReadAs<ExecSeen>(Exec{.comm = "0123456789abcdef"}.Bytes())->comm, "0123456789abcdef");
}

// The ring rounds lengths up to eight bytes.
TEST(KernelRecords, WhatStandsBehindThePathIsLeftOut) {
  EXPECT_EQ(ReadAs<ExecSeen>(Exec{}.Bytes() + "junk\0jun")->program.path, "/usr/bin/true");
}

TEST(KernelRecords, EveryShortRecordIsRefused) {
  for (const std::string& whole :
       {Exec{}.Bytes(), Fork(5, 6, 1, 9), Exit(5, 6), Tcp{}.Bytes(), Module("m", 5, 6)}) {
    ASSERT_TRUE(ReadKernelRecord(whole));
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_FALSE(ReadKernelRecord(std::string_view(whole).substr(0, size)))
          << size << " of " << whole.size();
    }
  }
}

TEST(KernelRecords, RecordAtAnOddAddressIsRead) {
  const std::string shifted = "x" + Tcp{}.Bytes();
  EXPECT_TRUE(ReadKernelRecord(std::string_view(shifted).substr(1)));
}

TEST(KernelRecords, UnknownKindIsRefused) {
  for (const std::uint32_t kind : {0U, static_cast<unsigned>(kRecordKinds), 0xFFFFFFFFU}) {
    std::string bytes = Exec{}.Bytes();
    std::memcpy(bytes.data(), &kind, sizeof kind);
    EXPECT_FALSE(ReadKernelRecord(bytes)) << kind;
  }
}

TEST(KernelRecords, TimeBeyondSignedNumbersIsRefused) {
  EXPECT_FALSE(ReadKernelRecord(Exec{.at_ns = 1ULL << 63U}.Bytes()));
  EXPECT_TRUE(ReadKernelRecord(Exec{.at_ns = (1ULL << 63U) - 1}.Bytes()));
}

TEST(KernelRecords, PathThatIsNoneIsRefused) {
  using namespace std::string_literals;
  EXPECT_FALSE(ReadKernelRecord(Exec{}.BytesWith("")));
  EXPECT_FALSE(ReadKernelRecord(Exec{}.BytesWith("true")));
  EXPECT_FALSE(ReadKernelRecord(Exec{}.BytesWith("true\0bin"s)));
  EXPECT_FALSE(ReadKernelRecord(Exec{}.BytesWith("true\0\0usr\0"s)));
  // A name that would forge a folder
  EXPECT_FALSE(ReadKernelRecord(Exec{}.BytesWith("usr/bin/true\0tmp\0"s)));
}

TEST(KernelRecords, ProgramInMemoryMayHaveAnyName) {
  const Exec exec{.flags = kExecDetached | kExecLinkless};
  const auto seen = ReadAs<ExecSeen>(exec.BytesWith(std::string("memfd:/../usr/bin/true") + '\0'));
  ASSERT_TRUE(seen);
  EXPECT_TRUE(seen->program.in_memory);
  EXPECT_EQ(seen->program.path, "/memfd:/../usr/bin/true");
}

TEST(KernelRecords, FileThatOnlyBearsTheNameIsNotInMemory) {
  EXPECT_FALSE(ReadAs<ExecSeen>(Exec{.path = "/memfd:x"}.Bytes())->program.in_memory);
}

TEST(KernelRecords, UnlinkedProgramIsDeleted) {
  EXPECT_TRUE(ReadAs<ExecSeen>(Exec{.flags = kExecUnlinked}.Bytes())->program.deleted);
  EXPECT_TRUE(ReadAs<ExecSeen>(Exec{.flags = kExecLinkless}.Bytes())->program.deleted);
  EXPECT_TRUE(ReadAs<ExecSeen>(Exec{.flags = kExecPathCut}.Bytes())->path_cut);
}

TEST(KernelRecords, OnlyBeginningAndEndOfASocketAreTold) {
  const auto event = [](int old_state, int new_state) -> std::optional<SocketEvent> {
    const auto seen = ReadAs<SocketSeen>(Tcp{.old_state = static_cast<std::uint8_t>(old_state),
                                             .new_state = static_cast<std::uint8_t>(new_state)}
                                             .Bytes());
    if (!seen) return {};
    return seen->event;
  };
  constexpr int kClosed = 7;
  constexpr int kFinWait = 4;
  EXPECT_EQ(event(kClosed, kTcpSynSent), SocketEvent::kConnects);
  EXPECT_EQ(event(kClosed, kTcpListen), SocketEvent::kListens);
  EXPECT_EQ(event(kTcpSynReceived, kTcpEstablished), SocketEvent::kAccepted);
  EXPECT_EQ(event(kTcpEstablished, kFinWait), SocketEvent::kEnded);
  EXPECT_EQ(event(kTcpSynSent, kClosed), SocketEvent::kEnded);
  EXPECT_EQ(event(kTcpListen, kClosed), SocketEvent::kEnded);
  EXPECT_EQ(event(kTcpSynSent, kTcpEstablished), std::nullopt);
  EXPECT_EQ(event(kFinWait, kClosed), std::nullopt);
}

TEST(KernelRecords, AddressesAreThoseOfTheNetworkTables) {
  const auto v4 = ReadAs<SocketSeen>(Tcp{.local_port = 40000}.Bytes());
  EXPECT_EQ(v4->Local().address, "192.0.2.5");
  EXPECT_EQ(v4->Local().port, 40000);
  EXPECT_EQ(v4->Remote().address, "198.51.100.7");
  EXPECT_EQ(v4->Remote().port, 443);
  const auto v6 = ReadAs<SocketSeen>(Tcp{.local = "::", .remote = "2001:db8::1"}.Bytes());
  EXPECT_EQ(v6->Local().reach, AddressReach::kAny);
  EXPECT_EQ(v6->Remote().address, "2001-db8--1");
  EXPECT_EQ(ReadAs<SocketSeen>(Tcp{.local = "::", .remote = "::ffff:198.51.100.7"}.Bytes())->Remote().address,
            "198.51.100.7");
  std::string other_family = Tcp{}.Bytes();
  other_family[offsetof(SocketRecord, family)] = AF_UNIX;
  EXPECT_FALSE(ReadKernelRecord(other_family));
}

TEST(KernelRecords, ModuleWithoutANameIsRefused) {
  EXPECT_EQ(ReadAs<ModuleSeen>(Module("dummy", 5, 6))->name, "dummy");
  EXPECT_FALSE(ReadKernelRecord(Module("", 5, 6)));
}

}  // namespace
}  // namespace zendrix::agent
