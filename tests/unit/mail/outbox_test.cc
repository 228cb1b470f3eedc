#include "mail/outbox.h"

#include "alert_text.h"
#include "platform/memory/memory_family.h"

namespace zendrix::mail {
namespace {

using test::AlertText;

Alert AlertAt(std::int64_t second, const std::string& code = "AG,1,1") {
  return *ParseAlert(AlertText(second, code));
}

class Boxed : public testing::Test {
 protected:
  void AddMany(int count) {
    for (int i = 0; i < count; ++i) EXPECT_TRUE(box.Add(AlertAt(++last)));
  }
  std::vector<std::int64_t> NextSeconds() {
    std::vector<std::int64_t> seconds;
    for (const Alert& alert : box.Next(now).alerts) seconds.push_back(alert.second);
    return seconds;
  }

  platform::MemoryFamily family;
  Outbox box;
  std::int64_t last = 1000;
  std::int64_t now = 100000;
};

using ::testing::ElementsAre;

TEST_F(Boxed, AlertIsTakenOnce) {
  EXPECT_TRUE(box.IsEmpty());
  EXPECT_FALSE(box.MaySend(now));
  EXPECT_TRUE(box.Add(AlertAt(5)));
  EXPECT_FALSE(box.Add(AlertAt(5)));
  EXPECT_TRUE(box.Add(AlertAt(5, "AG,2,1")));
  EXPECT_TRUE(box.Add(AlertAt(6)));
  EXPECT_EQ(box.size(), 3U);
}

TEST_F(Boxed, MetAlertsOutliveTheirMails) {
  box.Add(AlertAt(5));
  box.Next(now);
  box.Sent(now);
  EXPECT_TRUE(box.IsEmpty());
  EXPECT_FALSE(box.Add(AlertAt(5)));
  AddMany(255);
  EXPECT_FALSE(box.Add(AlertAt(5)));
  AddMany(1);
  EXPECT_TRUE(box.Add(AlertAt(5))) << "only so many are remembered";
}

TEST_F(Boxed, FiveInAnHourAreMailsOfTheirOwn) {
  AddMany(5);
  for (std::int64_t i = 0; i < 5; ++i, ++now) {
    ASSERT_TRUE(box.MaySend(now));
    ASSERT_THAT(NextSeconds(), ElementsAre(1001 + i));
    box.Sent(now);
  }
  AddMany(2);
  EXPECT_FALSE(box.MaySend(now));
  now += Outbox::kApart - 2;
  EXPECT_FALSE(box.MaySend(now));
  EXPECT_TRUE(box.MaySend(++now));
  EXPECT_THAT(NextSeconds(), ElementsAre(1006, 1007));
}

TEST_F(Boxed, MoreThanThatIsOneMail) {
  AddMany(6);
  EXPECT_EQ(NextSeconds().size(), 6U);
  box.Sent(now);
  AddMany(5);
  EXPECT_EQ(NextSeconds().size(), 5U) << "four are left of the hour's five";
  box.Sent(now);
  AddMany(3);
  EXPECT_EQ(NextSeconds().size(), 1U);
}

TEST_F(Boxed, AnHourLaterTheyAreMailsOfTheirOwnAgain) {
  for (int i = 0; i < 5; ++i) {
    AddMany(1);
    box.Next(now);
    box.Sent(now);
  }
  AddMany(1);
  EXPECT_FALSE(box.MaySend(now + 1));
  now += Outbox::kHour;
  EXPECT_TRUE(box.MaySend(now));
  AddMany(1);
  EXPECT_EQ(NextSeconds().size(), 1U);
}

TEST_F(Boxed, ClockThatWasPutBackHoldsNothingUp) {
  for (int i = 0; i < 5; ++i) {
    AddMany(1);
    box.Next(now);
    box.Sent(now);
  }
  AddMany(2);
  now -= 5000;
  EXPECT_TRUE(box.MaySend(now));
  EXPECT_EQ(NextSeconds().size(), 1U);
  // Put back by less, it leaves some mails of this hour and the last one of the future.
  box.Sent(now + 6000);
  EXPECT_TRUE(box.MaySend(now + 5001));
}

TEST_F(Boxed, OfAFloodTheNumberIsKept) {
  AddMany(700);
  EXPECT_EQ(box.size(), 700U);
  const auto mail = box.Next(now);
  EXPECT_EQ(mail.alerts.size(), Outbox::kMostWaiting);
  EXPECT_EQ(mail.unlisted, 200U);
  AddMany(3);
  box.Sent(now);
  EXPECT_EQ(box.size(), 3U) << "what came meanwhile was in no mail";
}

TEST_F(Boxed, MailThatWasTriedTellsTheSameAgain) {
  AddMany(2);
  EXPECT_THAT(NextSeconds(), ElementsAre(1001));
  AddMany(9);
  EXPECT_THAT(NextSeconds(), ElementsAre(1001));
  box.Sent(now);
  EXPECT_EQ(NextSeconds().size(), 10U);
}

TEST_F(Boxed, RefusalsAreCountedForEachMail) {
  AddMany(2);
  box.Next(now);
  EXPECT_EQ(box.Refused(), 1);
  EXPECT_EQ(box.Refused(), 2);
  box.Drop();
  EXPECT_EQ(box.size(), 1U);
  box.Next(now);
  EXPECT_EQ(box.Refused(), 1);
}

TEST_F(Boxed, TextBringsItAllBack) {
  AddMany(600);
  box.Next(now);
  box.Refused();
  box.position = {{7, 9}, 12345, std::string("a\0\xFF\n", 4), true};
  box.since = 77;
  const auto again = Outbox::Parse(box.Text(family), family);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->Text(family), box.Text(family));
  EXPECT_EQ(again->position, box.position);
  EXPECT_EQ(again->since, 77);
  Outbox copy = *again;
  EXPECT_EQ(copy.size(), 600U);
  EXPECT_EQ(copy.Next(now).alerts.size(), 500U);
  EXPECT_EQ(copy.Refused(), 2);
  EXPECT_FALSE(copy.Add(AlertAt(last)));
  copy.Sent(now);
  EXPECT_EQ(Outbox::Parse(copy.Text(family), family)->Text(family), copy.Text(family));
}

TEST_F(Boxed, TextThatIsNotWholeIsNothing) {
  AddMany(2);
  const std::string text = box.Text(family);
  for (std::size_t size = 0; size < text.size(); ++size) {
    EXPECT_FALSE(Outbox::Parse(text.substr(0, size), family)) << size;
  }
  for (std::size_t at = 0; at < text.size(); ++at) {
    std::string other = text;
    other[at] = static_cast<char>(other[at] ^ 1);
    EXPECT_FALSE(Outbox::Parse(other, family)) << at;
  }
}

// Whole by its sum, but nothing that this program writes.
TEST_F(Boxed, ForgedTextIsNothing) {
  const auto parse = [&](const std::string& lines) {
    const std::string body = "zendrix-mail 1\n" + lines;
    return Outbox::Parse(body + "sum " + family.HashBytes(body) + "\n", family).has_value();
  };
  EXPECT_TRUE(parse(""));
  EXPECT_FALSE(parse("tried 1 0 0\n"));
  EXPECT_FALSE(parse("tried 0 1 0\n"));
  EXPECT_FALSE(parse("tried 0 0 -1\n"));
  EXPECT_FALSE(parse("read 1 2 -3 0 x\n"));
  EXPECT_FALSE(parse("read 1 2 3 0 x1\n"));
  EXPECT_FALSE(parse("read 1 2 3 0 xzz\n"));
  EXPECT_TRUE(parse("read 1 2 3 0 x41\n"));
  EXPECT_FALSE(parse("waits no alert\n"));
  EXPECT_FALSE(parse("sent\n"));
  EXPECT_FALSE(parse("since x\n"));
  EXPECT_FALSE(parse("else 1\n"));
}

TEST_F(Boxed, ClearedItIsEmptyAndSaysHowMuchThereWas) {
  AddMany(501);
  box.Next(now);
  EXPECT_EQ(box.Clear(), 501U);
  EXPECT_TRUE(box.IsEmpty());
  AddMany(1);
  EXPECT_EQ(NextSeconds().size(), 1U);
}

}  // namespace
}  // namespace zendrix::mail
