#include "alerts/links.h"

#include "support/alert_fixture.h"

namespace zendrix::test {
namespace {

constexpr char kBase[] = "http://portal.example.com/redir.asp";

class LinksTest : public AlertFixture {
 protected:
  std::string Link(const std::string& monitor, const std::string& description,
                   alerts::Purpose purpose = alerts::Purpose::kExact) {
    return alerts::GetLink(state_, world_.log, purpose, monitor, description).Finish();
  }
  static std::string Expected(const std::string& word, const std::string& value) {
    std::string anchor = "<A HREF='";
    anchor.append(kBase).append("?PostType=UserGetDescription&Mon=").append(word);
    return anchor.append("&Desc=").append(value).append("'>");
  }
};

TEST_F(LinksTest, MonitorWordLosesBlanksAndDashes) {
  EXPECT_EQ(Link("Logged-on Users", "eve"), Expected("LoggedonUsers", "eve"));
}

TEST_F(LinksTest, LoggedOnWithACapitalOHasAnEmptyTarget) {
  EXPECT_EQ(Link("Logged-On Users", "eve"), "<A HREF=''>");
}

TEST_F(LinksTest, HostNameOfThreeLabelsLosesItsFirst) {
  EXPECT_EQ(Link("TCP Connections", "www.example.org"), Expected("TCPConnections", "example.org"));
  EXPECT_EQ(Link("TCP Connections", "a.b.example.org"), Expected("TCPConnections", "b.example.org"));
}

TEST_F(LinksTest, NumericAddressAndShortNameStayWhole) {
  EXPECT_EQ(Link("TCP Connections", "10.0.0.7"), Expected("TCPConnections", "10.0.0.7"));
  EXPECT_EQ(Link("TCP Connections", "example.org"), Expected("TCPConnections", "example.org"));
}

// In a locale without thousands marks of its own, "1,5" was a number or not by the user's settings.
TEST_F(LinksTest, FirstLabelIsANumberAsTheAgentWritesOne) {
  platform::LocaleInfo& locale = world_.platform.locale.info;
  locale.decimal = "x";
  locale.thousands = "'";
  locale.currency = "kr";
  EXPECT_EQ(Link("TCP Connections", "1,5.example.org"), Expected("TCPConnections", "1,5.example.org"));
  EXPECT_EQ(Link("TCP Connections", "1x5.example.org"), Expected("TCPConnections", "example.org"));
  EXPECT_EQ(Link("TCP Connections", "kr5.example.org"), Expected("TCPConnections", "example.org"));
}

TEST_F(LinksTest, QuotesOfTheBaseStayInTheTargetOfAPage) {
  state_.Desc[10] = {"Central,http://10.1.1.1/o'x\"<>"};
  EXPECT_EQ(Link("System Users", "eve", alerts::Purpose::kShown),
            "<A HREF='http://10.1.1.1/o%27x%22%3C%3E?PostType=UserGetDescription&Mon=SystemUsers&Desc=eve'>");
}

TEST_F(LinksTest, ApostropheEndsTheTargetOfTheExactTextOnly) {
  EXPECT_EQ(Link("System Users", "o'neil"), Expected("SystemUsers", "o'neil"));
  EXPECT_EQ(Link("System Users", "o'neil", alerts::Purpose::kShown), Expected("SystemUsers", "o%27neil"));
}

TEST_F(LinksTest, CentralLineReplacesTheBase) {
  state_.Desc[10] = {"some note", "Central,http://10.1.1.1/x"};
  EXPECT_EQ(Link("System Users", "eve"),
            "<A HREF='http://10.1.1.1/x?PostType=UserGetDescription&Mon=SystemUsers&Desc=eve'>");
}

TEST_F(LinksTest, DictionaryWithoutCentralLineKeepsTheBase) {
  state_.Desc[10] = {"some note"};
  EXPECT_EQ(Link("System Users", "eve"), Expected("SystemUsers", "eve"));
}

}  // namespace
}  // namespace zendrix::test
