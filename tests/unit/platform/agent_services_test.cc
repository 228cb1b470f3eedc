#include "platform/linux/agent_services.h"

#include <gtest/gtest.h>

#include "platform/linux/process_lock.h"
#include "platform/memory/fake_service_manager.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

class AgentServicesTest : public ::testing::Test {
 protected:
  ~AgentServicesTest() override { local_.Run("ZENDRIX", ServiceMethod::kStop).ok(); }

  std::string Told() {
    const auto properties = services_.Properties("ZENDRIX");
    return properties ? properties.value().display_name + " " + properties.value().state
                      : "error " + std::to_string(static_cast<int>(properties.error().kind));
  }
  int Run(ServiceMethod method) {
    const auto result = services_.Run("ZENDRIX", method);
    return result ? result.value() : -1;
  }

  test::TemporaryFolder folder_;
  FakeServiceManager manager_;
  LocalServiceManager local_{{"ZENDRIX", ZENDRIX_TEST_AGENT, folder_.path(), {}, std::chrono::seconds(100)}};
  AgentServices services_{manager_, local_};
};

TEST_F(AgentServicesTest, ServiceOfTheManagerComesFirst) {
  manager_.SetRunning("ZENDRIX");
  EXPECT_EQ(Told(), "ZENDRIX Running");
  EXPECT_EQ(Run(ServiceMethod::kStop), 0);
  EXPECT_EQ(Run(ServiceMethod::kStart), 0);
  EXPECT_FALSE(local_.Process());
}

TEST_F(AgentServicesTest, ServiceThatIsNotInstalledLeavesItToTheAgent) {
  EXPECT_EQ(Told(), "Zendrix Agent Stopped");
  EXPECT_EQ(Run(ServiceMethod::kStart), 0);
  EXPECT_EQ(Told(), "Zendrix Agent Running");
  EXPECT_EQ(Run(ServiceMethod::kStop), 0);
}

TEST_F(AgentServicesTest, WithoutAManagerThereIsTheAgent) {
  manager_.SetRunning("ZENDRIX");
  manager_.unavailable = true;
  EXPECT_EQ(Told(), "Zendrix Agent Stopped");
  EXPECT_EQ(Run(ServiceMethod::kStart), 0);
}

// With a service installed as well, Disable would have stopped that one, and the folder been written on.
TEST_F(AgentServicesTest, FolderOfAnAgentIsTheAgentsWhateverElseIsInstalled) {
  ASSERT_EQ(local_.Run("ZENDRIX", ServiceMethod::kStart).value(), 0);
  manager_.SetRunning("ZENDRIX");
  EXPECT_EQ(Told(), "Zendrix Agent Running");
  EXPECT_EQ(Run(ServiceMethod::kStop), 0);
  EXPECT_EQ(Run(ServiceMethod::kStop), 6);
  EXPECT_EQ(Run(ServiceMethod::kStart), 0);
  EXPECT_EQ(manager_.runs.size(), 0u);
}

TEST_F(AgentServicesTest, RefusalOfTheManagerIsFinal) {
  manager_.SetStopped("ZENDRIX");
  manager_.Script(ServiceMethod::kStart, 2);
  EXPECT_EQ(Run(ServiceMethod::kStart), 2);
  manager_.Script(ServiceMethod::kStart, 7);
  EXPECT_EQ(Run(ServiceMethod::kStart), 7);
  EXPECT_FALSE(local_.Process());
}

// A manager that answers too late is there all the same, and so may be its Agent.
TEST_F(AgentServicesTest, SlowManagerIsNotPassedOver) {
  class Slow : public ServiceManager {
   public:
    Result<int> Run(const std::string&, ServiceMethod) override { return 7; }
    Result<ServiceProperties> Properties(const std::string&) override {
      return Error{ErrorKind::kOther, "the bus does not answer"};
    }
  } slow;
  AgentServices services(slow, local_);
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kOther);
}

TEST_F(AgentServicesTest, WithNeitherTheManagersErrorStands) {
  LocalServiceManager nothing({"ZENDRIX", folder_.Path("none"), folder_.path(), {}});
  AgentServices services(manager_, nothing);
  manager_.unavailable = true;
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStart).error().kind, ErrorKind::kUnavailable);
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kUnavailable);
}

}  // namespace
}  // namespace zendrix::platform
