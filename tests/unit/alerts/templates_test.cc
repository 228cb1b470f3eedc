#include "alerts/templates.h"

#include "support/alert_fixture.h"

namespace zendrix::test {
namespace {

using alerts::Purpose;

class TemplatesTest : public AlertFixture {
 protected:
  std::string Tag(Purpose purpose) {
    return alerts::IconTag(state_, purpose, "\\Images\\bug_red.png").Finish();
  }
};

// The folder's name stood in the page's single-byte text in the host's own bytes.
TEST_F(TemplatesTest, FolderWithLettersBeyondAsciiStandsInAPageInItsCodePage) {
  state_.ProgramFolder =
      "/Gr\xC3\xBC\xC3\x9F"
      "e";
  EXPECT_EQ(alerts::AppPath(state_),
            "/Gr\xFC\xDF"
            "e");
  EXPECT_EQ(Tag(Purpose::kExact),
            "<p><p><IMG SRC='/Gr\xFC\xDF"
            "e\\Images\\bug_red.png' ALIGN=bottom HSPACE=4>");
}

// A "?" or "#" in the folder's name ended the picture's path, and a quote the attribute.
TEST_F(TemplatesTest, FolderIsPercentEncodedInWhatAPageShows) {
  state_.ProgramFolder = "/it's #1?\xE6\x97\xA5";
  EXPECT_EQ(Tag(Purpose::kShown),
            "<p><p><IMG SRC='/it%27s%20%231%3F%3F\\Images\\bug_red.png' ALIGN=bottom HSPACE=4>");
}

}  // namespace
}  // namespace zendrix::test
