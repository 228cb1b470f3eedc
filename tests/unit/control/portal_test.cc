#include "control/portal.h"

#include "core/version.h"
#include "support/console_world.h"

namespace zendrix::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr PortalRequest kAll[] = {PortalRequest::kFeedback, PortalRequest::kSupport,
                                  PortalRequest::kNewVersion, PortalRequest::kSurvey, PortalRequest::kTour};

class PortalTest : public ::testing::Test {
 protected:
  PortalTest() {
    world_.platform.family.host_id = "HOST&1";
    world_.state.PortalBase = "http://portal.test/redir.asp";
  }
  std::string Url(PortalRequest request) { return PortalUrl(world_.state, screen_, request); }
  std::vector<std::string>& Opened() { return world_.platform.shell.opened; }
  // The places under which the requests log a failure, in their order.
  std::vector<std::string> Lines() { return world_.quiet.Take(); }

  zendrix::testing::ConsoleWorld world_;
  widgets::Screen screen_;
};

std::string Version() {
  return std::to_string(core::kVersionMajor) + "." + std::to_string(core::kVersionMinor) + ".0." +
         std::to_string(core::kVersionRevision);
}

TEST_F(PortalTest, EveryRequestHasItsVocabularyAndNothingIsEncoded) {
  const std::string base = "http://portal.test/redir.asp?PostType=";
  const std::string product = "&HostID=HOST&1&Product=ZendrixHome&Ver=" + Version() + "&Reason=";
  EXPECT_EQ(Url(PortalRequest::kFeedback), base + "UserFeedback" + product);
  EXPECT_EQ(Url(PortalRequest::kSupport), base + "UserSupport" + product);
  EXPECT_EQ(Url(PortalRequest::kNewVersion), base + "UserCheckNewVersion&HostID=HOST&1&Ver=" + Version());
  EXPECT_EQ(Url(PortalRequest::kSurvey), base + "UserSurvey" + product + "inUse");
  EXPECT_EQ(Url(PortalRequest::kTour), base + "UserGettingStarted" + product);
  EXPECT_EQ(world_.platform.family.host_id_calls, std::vector<std::string>(5, "Zendrix"));
}

TEST_F(PortalTest, CentralLineReplacesTheBaseWhole) {
  world_.state.Desc[10] = {"some note", "Central,http://10.1.1.1/x?", "Central,http://other/"};
  EXPECT_EQ(Url(PortalRequest::kNewVersion),
            "http://10.1.1.1/x??PostType=UserCheckNewVersion&HostID=HOST&1&Ver=" + Version());
}

TEST_F(PortalTest, RequestIsOpenedByTheShell) {
  OpenPortal(world_.state, world_.log, screen_, PortalRequest::kSurvey);
  EXPECT_THAT(Opened(), ElementsAre(Url(PortalRequest::kSurvey)));
}

// Feedback is logged under the name of Support.
TEST_F(PortalTest, EachRequestFailsUnderItsNameInTheLogAndNoBrowserOpens) {
  world_.platform.family.library_missing = true;
  for (const PortalRequest request : kAll) OpenPortal(world_.state, world_.log, screen_, request);
  EXPECT_THAT(Opened(), IsEmpty());
  EXPECT_THAT(Lines(), ElementsAre("'frmNewUI : Support_Click': 53: File not found",
                                   "'frmNewUI : Support_Click': 53: File not found",
                                   "'frmNewUI : NewVer_Click': 53: File not found",
                                   "'frmNewUI : TakeSurvey': 53: File not found",
                                   "'frmTour : Form_Load': 53: File not found"));
}

TEST_F(PortalTest, AddressThatCannotBeHadIsNoneAndIsLogged) {
  world_.platform.family.library_missing = true;
  for (const PortalRequest request : kAll) {
    std::string url;
    EXPECT_FALSE(GuardedPortalUrl(world_.state, world_.log, screen_, request, url));
    EXPECT_EQ(url, "");
  }
  EXPECT_EQ(Lines().size(), std::size(kAll));
}

TEST_F(PortalTest, AddressThatCanBeHadIsGivenWithoutALogLine) {
  std::string url;
  EXPECT_TRUE(GuardedPortalUrl(world_.state, world_.log, screen_, PortalRequest::kTour, url));
  EXPECT_EQ(url, Url(PortalRequest::kTour));
  EXPECT_THAT(Opened(), IsEmpty());
}

TEST_F(PortalTest, ShellThatRefusesIsLogged) {
  world_.platform.shell.fail = platform::ErrorKind::kPermissionDenied;
  OpenPortal(world_.state, world_.log, screen_, PortalRequest::kNewVersion);
  EXPECT_THAT(Lines(), ElementsAre("'frmNewUI : NewVer_Click': 70: Permission denied"));
}

// The pointer was an arrow while the library took its time.
TEST_F(PortalTest, PointerIsAnHourglassWhileTheHostIsAskedFor) {
  std::vector<int> shapes;
  const auto link = screen_.MousePointer.changed.Connect([&] {
    shapes.push_back(screen_.MousePointer);
    EXPECT_THAT(Opened(), IsEmpty()) << "the browser is opened behind it";
  });
  OpenPortal(world_.state, world_.log, screen_, PortalRequest::kSupport);
  EXPECT_THAT(shapes, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
  EXPECT_EQ(Opened().size(), 1U);
}

TEST_F(PortalTest, PointerIsAnArrowAgainAfterAFailure) {
  world_.platform.family.library_missing = true;
  OpenPortal(world_.state, world_.log, screen_, PortalRequest::kSupport);
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  EXPECT_EQ(Lines().size(), 1U);
}

}  // namespace
}  // namespace zendrix::control
