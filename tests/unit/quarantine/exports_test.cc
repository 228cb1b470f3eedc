// The flat functions of the shared library, called as any language may call them.
#include <errno.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <climits>

#include "family/intermediate/host_id.h"
#include "family/intermediate/korvessa_intermediate_types.h"
#include "platform/linux/linux_family.h"
#include "unit/quarantine/quarantine_fixture.h"

namespace zendrix::family {
namespace {

// The library knows no computer but the real one, on which the store must be on a disk.
std::string OnDisk() {
  for (const char* path : {"/var/tmp", "/tmp", "."}) {
    struct statfs system = {};
    if (statfs(path, &system) == 0 && system.f_type != TMPFS_MAGIC && access(path, W_OK) == 0)
      return std::filesystem::canonical(path);
  }
  throw std::runtime_error("no folder on a disk to be had");
}

class ExportsTest : public QuarantineTest {
 protected:
  ExportsTest() : disk_(OnDisk()), program_on_disk_(disk_.path() + "/program") {
    std::filesystem::create_directory(program_on_disk_);
    ConfigureExport(program_on_disk_.c_str(), 0);
  }

  const Scratch disk_;
  const std::string program_on_disk_;
};

TEST_F(ExportsTest, BlockAndAllowMoveTheFileAndSaySo) {
  const std::string path = Make("tool");
  std::string message(256, ' ');
  EXPECT_EQ(QuarantineExport(path.c_str(), message.data(), 256), 0);
  EXPECT_STREQ(
      message.c_str(),
      ("\"" + path + "\" was moved to quarantine and can no longer be started. Allow brings it back.")
          .c_str());
  EXPECT_FALSE(LookAt(path).there);
  EXPECT_EQ(UnquarantineExport(path.c_str(), message.data(), 256), 0);
  EXPECT_STREQ(message.c_str(), ("\"" + path + "\" was put back in its place.").c_str());
  EXPECT_TRUE(LookAt(path).there);
}

TEST_F(ExportsTest, TheMessageEndsInANulWithinItsSizeWhateverTheSize) {
  for (int size = 1; size <= 300; ++size) {
    for (const auto function : {QuarantineExport, UnquarantineExport}) {
      std::string message(310, '#');
      EXPECT_EQ(function("nothing", message.data(), size), 1);
      const auto end = message.find('\0');
      ASSERT_LT(end, static_cast<std::size_t>(size));
      EXPECT_EQ(message.substr(static_cast<std::size_t>(size)), std::string(310 - size, '#'))
          << "written beyond";
      if (size == 1) {
        EXPECT_EQ(end, 0U);
      }
    }
  }
}

TEST_F(ExportsTest, SizesOfNothingLeaveTheBufferAlone) {
  for (const std::int32_t size : {0, -1, INT_MIN}) {
    char message[] = "###";
    EXPECT_EQ(QuarantineExport("nothing", message, size), 1);
    EXPECT_EQ(UnquarantineExport("nothing", message, size), 1);
    GetHostIDExport("Zendrix", message, size);
    EXPECT_STREQ(message, "###");
  }
}

TEST_F(ExportsTest, NullPointersAreTakenForNothing) {
  char message[256];
  EXPECT_EQ(QuarantineExport(nullptr, message, sizeof message), 1);
  EXPECT_STREQ(message,
               "This event names no file on this computer, so there is nothing to put in quarantine.");
  EXPECT_EQ(UnquarantineExport(nullptr, nullptr, 256), 1);
  EXPECT_EQ(QuarantineExport("nothing", nullptr, 256), 1);
  GetHostIDExport(nullptr, nullptr, 256);
  ConfigureExport(nullptr, 0);
  EXPECT_EQ(QuarantineExport("nothing", message, sizeof message), 1);
  EXPECT_STREQ(message, "The folder of Zendrix cannot be found. Nothing was changed.");
}

TEST_F(ExportsTest, EverySentenceFitsIntoTheMessage) {
  char message[256];
  const std::string longest(250, 'n');
  const std::string path = Make(longest), decoy = Make(longest + ":1");
  QuarantineExport(decoy.c_str(), message, sizeof message);
  EXPECT_TRUE(std::string(message).ends_with("Nothing was changed.")) << message;
}

TEST_F(ExportsTest, PretendingMovesNothing) {
  ConfigureExport(program_on_disk_.c_str(), 1);
  const std::string path = Make("tool");
  char message[256];
  EXPECT_EQ(QuarantineExport(path.c_str(), message, sizeof message), 0) << message;
  EXPECT_TRUE(LookAt(path).there);
  EXPECT_EQ(NamesOf(program_on_disk_), std::vector<std::string>());
}

TEST_F(ExportsTest, AWholeLongPathIsToldAndShortenedInTheMiddleOnlyWhenItDoesNotFit) {
  char message[256];
  const auto told = [&](const std::string& path) {
    EXPECT_EQ(QuarantineExport(path.c_str(), message, sizeof message), 0) << message;
    return std::string(message);
  };
  const std::string rest = "\" was moved to quarantine and can no longer be started. Allow brings it back.";
  const std::string fits = Make(std::string(254 - rest.size() - files_.size() - 1, 'f'));
  EXPECT_EQ(told(fits), "\"" + fits + rest);
  const std::string longer = Make(std::string(250, 'n') + "!");
  const std::string said = told(longer);
  EXPECT_EQ(said.size(), 255U);
  EXPECT_TRUE(said.starts_with("\"" + longer.substr(0, 40))) << said;
  EXPECT_TRUE(said.ends_with("nnn!" + rest)) << said;
  EXPECT_NE(said.find("..."), std::string::npos) << said;
}

TEST_F(ExportsTest, ThePlatformFindsTheLibraryBesideTheProgramAndUsesIt) {
  platform::LinuxFamily family(std::filesystem::canonical(program_invocation_name).parent_path());
  family.ConfigureQuarantine(program_on_disk_, false);
  const std::string path = Make("a tool\t%");
  // Putting a file back is a change of it, so each click has an event of its own.
  const auto event = [&] {
    return platform::QuarantineEvent{"Running Processes", path, std::to_string(time(nullptr) + 1), "42\t"};
  };
  std::string message;
  ASSERT_TRUE(family.QuarantineExport(event(), message).ok());
  EXPECT_NE(message.find("was moved to quarantine"), std::string::npos) << message;
  EXPECT_FALSE(LookAt(path).there);
  EXPECT_EQ(family.QuarantineListOf("42").value().size(), 0U);
  const auto entries = family.QuarantineListOf("42\t").value();
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].path, path);
  EXPECT_EQ(entries[0].size, std::string(kContents).size());
  EXPECT_EQ(entries[0].sha256, family.HashBytes(kContents));
  EXPECT_EQ(entries[0].owner, geteuid());
  EXPECT_NEAR(static_cast<double>(entries[0].when), static_cast<double>(time(nullptr)), 300.0);
  EXPECT_FALSE(family.RestoreExport("nothing", message).value());
  EXPECT_TRUE(message.starts_with("There is no such entry in quarantine.")) << message;
  EXPECT_TRUE(family.RestoreExport(entries[0].name, message).value()) << message;
  EXPECT_TRUE(LookAt(path).there);
  ASSERT_TRUE(family.QuarantineExport(event(), message).ok());
  ASSERT_TRUE(family.UnquarantineExport(event(), message).ok());
  EXPECT_TRUE(LookAt(path).there) << message;
  EXPECT_EQ(family.QuarantineList().value().size(), 0U);
}

TEST_F(ExportsTest, AnEventIsTakenAsItIsHandedOver) {
  const std::string path = Make("tool");
  char message[256];
  QuarantineArguments event;
  event.monitor = "Running Processes";
  event.description = path.c_str();
  for (const char* moment : {"", "x", "5x", "5"}) {
    event.event_utc = moment;
    EXPECT_EQ(QuarantineEventExport(&event, message, sizeof message), 1) << moment;
  }
  EXPECT_NE(std::string(message).find("was changed after this event"), std::string::npos) << message;
  event.event_utc = "99999999999";
  EXPECT_EQ(QuarantineEventExport(&event, message, sizeof message), 1) << "still to come";
  EXPECT_NE(std::string(message).find("when the event was is not known"), std::string::npos) << message;
  const std::string now = std::to_string(time(nullptr) + 1);
  event.event_utc = now.c_str();
  event.shown = 0;
  EXPECT_EQ(QuarantineEventExport(&event, message, sizeof message), 1);
  EXPECT_STREQ(message, "The page of this alert does not show this event. Nothing was changed.");
  event.shown = 1;
  event.size = 8;
  EXPECT_EQ(QuarantineEventExport(&event, message, sizeof message), 1) << "none of this make";
  EXPECT_EQ(QuarantineEventExport(nullptr, message, sizeof message), 1);
  EXPECT_EQ(UnquarantineEventExport(nullptr, message, sizeof message), 1);
  EXPECT_EQ(RestoreExport(nullptr, message, sizeof message), 1);
  event.size = sizeof event;
  EXPECT_EQ(QuarantineEventExport(&event, message, sizeof message), 0) << message;
  EXPECT_EQ(UnquarantineEventExport(&event, message, sizeof message), 0) << message;
}

TEST_F(ExportsTest, TheListSaysHowMuchRoomItNeedsAndWhyItCannotBeHad) {
  char small[8] = "#######";
  EXPECT_EQ(QuarantineListExport(small, sizeof small), 0);
  EXPECT_STREQ(small, "");
  char message[256];
  ASSERT_EQ(QuarantineExport(Make("tool").c_str(), message, sizeof message), 0) << message;
  const std::int32_t needed = QuarantineListExport(small, sizeof small);
  ASSERT_GT(needed, 100);
  EXPECT_EQ(QuarantineListExport(nullptr, 0), needed);
  std::string list(static_cast<std::size_t>(needed), '#');
  EXPECT_EQ(QuarantineListExport(list.data(), needed), needed);
  EXPECT_EQ(list.find("\t"), std::string::npos) << "written without room for the NUL";
  list.assign(static_cast<std::size_t>(needed) + 1, '#');
  EXPECT_EQ(QuarantineListExport(list.data(), needed + 1), needed);
  EXPECT_EQ(list.find('\0'), static_cast<std::size_t>(needed));
  EXPECT_EQ(std::count(list.begin(), list.end(), '\t'), 6);
  ConfigureExport("/nonexistent", 0);
  EXPECT_EQ(QuarantineListExport(message, sizeof message), -1);
  EXPECT_STREQ(message, "The folder of Zendrix cannot be found. Nothing was changed.");
}

// A system that was set up but never started may have the second only.
std::string MachineId() {
  const auto read = [](const char* path) {
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
  };
  const std::string id = read("/etc/machine-id");
  return (id.size() >= 32 ? id : read("/var/lib/dbus/machine-id")).substr(0, 32);
}

TEST_F(ExportsTest, TheHostIdIsStableAndNotTheMachineId) {
  std::string id(5120, ' '), again(5120, ' ');
  const std::int32_t result = GetHostIDExport("Zendrix", id.data(), 5120);
  EXPECT_EQ(GetHostIDExport("Zendrix", again.data(), 5120), result);
  EXPECT_EQ(id, again);
  id.resize(id.find('\0'));
  if (MachineId().empty()) {
    EXPECT_EQ(result, 1);
    EXPECT_EQ(id, "");
    return;
  }
  EXPECT_EQ(result, 0);
  EXPECT_EQ(id, DeriveHostId(MachineId(), "Zendrix"));
  EXPECT_EQ(id.find(MachineId()), std::string::npos);
}

TEST(HostIdTest, IsAKeyedHashOfTheProduct) {
  const std::string machine = "0123456789abcdef0123456789abcdef";
  // printf %s 'Korvessa host identifier 1:Zendrix' | openssl dgst -sha256 -hmac
  // 0123456789abcdef0123456789abcdef
  EXPECT_EQ(DeriveHostId(machine, "Zendrix"),
            "6030f53304a834f08ed339548c11f8e29bd1cfad79e82cb14f1f88f7725e4fbb");
  EXPECT_NE(DeriveHostId(machine, "Zendrix"), DeriveHostId(machine, "Other"));
  EXPECT_NE(DeriveHostId(machine, "Zendrix"), DeriveHostId("1123456789abcdef0123456789abcdef", "Zendrix"));
  EXPECT_EQ(DeriveHostId("", "Zendrix"), "");
}

}  // namespace
}  // namespace zendrix::family
