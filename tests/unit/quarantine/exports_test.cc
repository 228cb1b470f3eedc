// The flat functions of the shared library, called as any language may call them.
#include <errno.h>

#include <climits>

#include "family/intermediate/host_id.h"
#include "family/intermediate/korvessa_intermediate_types.h"
#include "platform/linux/linux_family.h"
#include "unit/quarantine/quarantine_fixture.h"

namespace zendrix::family {
namespace {

class ExportsTest : public QuarantineTest {
 protected:
  ExportsTest() { ConfigureExport(program_.c_str(), 0); }
};

TEST_F(ExportsTest, BlockAndAllowMoveTheFileAndSaySo) {
  const std::string path = Make("tool");
  std::string message(256, ' ');
  EXPECT_EQ(QuarantineExport((path + ":12").c_str(), message.data(), 256), 0);
  EXPECT_STREQ(message.c_str(),
               "\"tool\" was moved to quarantine and can no longer be started. Allow brings it back.");
  EXPECT_FALSE(LookAt(path).there);
  EXPECT_EQ(UnquarantineExport((path + ":12").c_str(), message.data(), 256), 0);
  EXPECT_STREQ(message.c_str(), "\"tool\" was put back in its place.");
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
  ConfigureExport(program_.c_str(), 1);
  const std::string path = Make("tool");
  char message[256];
  EXPECT_EQ(QuarantineExport(path.c_str(), message, sizeof message), 0);
  EXPECT_TRUE(LookAt(path).there);
  EXPECT_FALSE(LookAt(store_).there);
}

TEST_F(ExportsTest, ThePlatformFindsTheLibraryBesideTheProgramAndUsesIt) {
  platform::LinuxFamily family(std::filesystem::canonical(program_invocation_name).parent_path());
  family.ConfigureQuarantine(program_, false);
  const std::string path = Make("tool");
  std::string message;
  ASSERT_TRUE(family.QuarantineExport({"Running Processes", path, "", ""}, message).ok());
  EXPECT_TRUE(message.starts_with("\"tool\" was moved to quarantine")) << message;
  EXPECT_FALSE(LookAt(path).there);
  ASSERT_TRUE(family.UnquarantineExport({"Running Processes", path, "", ""}, message).ok());
  EXPECT_TRUE(LookAt(path).there);
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
