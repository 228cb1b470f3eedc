#include "settings/smtp_fields.h"

#include <gmock/gmock.h>

#include "settings_fixture.h"

namespace zendrix::settings {
namespace {

using ::testing::ElementsAre;

class SmtpFieldsTest : public SettingsTest {
 protected:
  widgets::Screen screen_;
  SmtpFields fields_{state_, screen_};
};

TEST_F(SmtpFieldsTest, ShownDataIsNotEditedAndAMissingPortIsTheStandardOne) {
  fields_.Show({"me@b.c", "mail.b.c", "587"});
  EXPECT_EQ(fields_.Data(), (SmtpData{"me@b.c", "mail.b.c", "587"}));
  EXPECT_FALSE(fields_.SmtpDirty);
  fields_.Show({});
  EXPECT_EQ(fields_.Data(), (SmtpData{"", "", "25"}));
  EXPECT_FALSE(fields_.SmtpDirty);
}

TEST_F(SmtpFieldsTest, ChangeOfAnyFieldCounts) {
  for (widgets::TextBox* box : {&fields_.Email, &fields_.Server, &fields_.Port}) {
    fields_.Show({});
    box->Type("1");
    EXPECT_TRUE(fields_.SmtpDirty) << box->name();
  }
}

TEST_F(SmtpFieldsTest, KeyThatChangesNothingDoesNotCount) {
  fields_.Show({});
  fields_.Email.Type("\b");
  fields_.Port.Type("x");
  EXPECT_FALSE(fields_.SmtpDirty);
}

TEST_F(SmtpFieldsTest, BadAddressAndServerAreTold) {
  fields_.Email.text = "a@b";
  EXPECT_FALSE(fields_.Email.Leave());
  fields_.Server.text = "b.c";
  EXPECT_FALSE(fields_.Server.Leave());
  EXPECT_THAT(Boxes(), ElementsAre("Not a valid email address.\r\nshould be as in: 'name@domain.ext'",
                                   "Not a valid Server name.\r\nshould be as in: 'server.maildomain.ext'"));
  EXPECT_TRUE(fields_.Port.Leave());
}

}  // namespace
}  // namespace zendrix::settings
