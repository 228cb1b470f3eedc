// The source under a recorded bus, and its stream on a bus of the test's own with stand-ins for logind and
// systemd.
#include "agent/sources/bus_source.h"

#include <gmock/gmock.h>

#include "agent/sources/memory/recorded_bus.h"
#include "platform/memory/fake_clock.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class RecordedBusTest : public testing::Test {
 protected:
  RecordedBusTest() { script.sessions = {{"1", "ann", "tty2", "", "user"}}; }
  void Open() {
    source = std::make_unique<BusSource>(
        clock, [this] { return script.Open(); }, [this] { ++units; });
  }
  std::vector<std::string> Drain() {
    last.clear();
    source->Drain(last);
    std::vector<std::string> texts;
    for (const Observation& one : last) {
      texts.push_back((one.kind == Observation::Kind::kCame   ? "+"
                       : one.kind == Observation::Kind::kWent ? "-"
                                                              : "lost ") +
                      one.item.description);
    }
    return texts;
  }

  platform::FakeClock clock;
  BusScript script;
  std::unique_ptr<BusSource> source;
  std::vector<Observation> last;
  int units = 0;
};

TEST_F(RecordedBusTest, BeginsWithTheSessionsThatThereAre) {
  Open();
  EXPECT_EQ(source->level(), (SourceLevel{Level::kNotices, "logind", ""}));
  EXPECT_THAT(source->Monitors(), ElementsAre(monitor::kLogins));
  EXPECT_THAT(Drain(), ElementsAre("+ann on tty2"));
  EXPECT_EQ(last[0].item.monitor, monitor::kLogins);
  EXPECT_EQ(last[0].item.identity, "tty2");
  EXPECT_THAT(Drain(), IsEmpty());
}

TEST_F(RecordedBusTest, SessionComesAndGoes) {
  Open();
  Drain();
  script.Came({"2", "bob", "pts/0", "192.0.2.7", "user"});
  script.Came({"3", "root", "", "far.example.org", "user-early"});
  EXPECT_THAT(Drain(), ElementsAre("+bob from 192.0.2.7", "+root from far.example.org"));
  EXPECT_TRUE(last[0].item.rules.Has(Rule::kLoginFromElsewhere));
  EXPECT_TRUE(last[1].item.rules.Has(Rule::kLoginAsRootFromElsewhere));
  EXPECT_EQ(last[1].item.identity, "session 3");
  script.Ended("2");
  script.Ended("2");
  script.Ended("99");
  EXPECT_THAT(Drain(), ElementsAre("-bob from 192.0.2.7"));
  EXPECT_EQ(last[0].item.identity, "pts/0");
}

TEST_F(RecordedBusTest, SessionsThatServeNoUserAreLeftOut) {
  script.sessions.push_back({"c1", "gdm", "tty1", "", "greeter"});
  Open();
  EXPECT_THAT(Drain(), ElementsAre("+ann on tty2"));
  script.Came({"7", "root", "", "", "background"});
  script.Ended("7");
  EXPECT_THAT(Drain(), IsEmpty());
}

TEST_F(RecordedBusTest, OneThatCannotBeAskedIsUnknownAndNeverGuessed) {
  Open();
  Drain();
  script.Came({"8", "", "", "", ""});
  script.Ended("8");
  EXPECT_THAT(Drain(), ElementsAre("+an unknown user on no terminal", "-an unknown user on no terminal"));
}

TEST_F(RecordedBusTest, NamesAreCleaned) {
  Open();
  Drain();
  script.Came({"8", "a|b\r\n", "x;y", "", "user"});
  EXPECT_THAT(Drain(), ElementsAre("+a_b__ on x_y"));
}

TEST_F(RecordedBusTest, RefusedBusIsTriedAgainAfterAMinute) {
  script.refusal = "logind does not answer: Connection timed out";
  Open();
  EXPECT_EQ(source->level(), (SourceLevel{Level::kNone, "logind", script.refusal}));
  EXPECT_THAT(Drain(), IsEmpty());
  script.refusal.clear();
  clock.Advance(BusSource::kTryAgainMs - 1);
  EXPECT_THAT(Drain(), IsEmpty());
  EXPECT_EQ(script.opened, 1);
  clock.Advance(1);
  EXPECT_THAT(Drain(), ElementsAre("+ann on tty2"));
  EXPECT_EQ(source->level().level, Level::kNotices);
}

TEST_F(RecordedBusTest, BusThatGoesAwayLowersTheLevelAndItsReturnTellsTheDifference) {
  script.sessions.push_back({"2", "bob", "tty3", "", "user"});
  Open();
  Drain();
  clock.Advance(BusSource::kTryAgainMs / 2);
  script.Gone("logind ended");
  EXPECT_THAT(Drain(), IsEmpty()) << "nobody logged off by it";
  EXPECT_EQ(source->level(), (SourceLevel{Level::kNone, "logind", "logind ended"}));
  script.sessions = {
      {"1", "ann", "tty2", "", "user"}, {"2", "eve", "tty3", "", "user"}, {"5", "joe", "tty5", "", "user"}};
  clock.Advance(BusSource::kTryAgainMs - 1);
  EXPECT_THAT(Drain(), IsEmpty());
  EXPECT_EQ(script.opened, 1);
  clock.Advance(1);
  EXPECT_THAT(Drain(), UnorderedElementsAre("-bob on tty3", "+eve on tty3", "+joe on tty5"));
}

TEST_F(RecordedBusTest, ChangedUnitsAreAWordToOthers) {
  Open();
  Drain();
  EXPECT_EQ(units, 0);
  script.UnitsChanged();
  EXPECT_THAT(Drain(), IsEmpty());
  EXPECT_EQ(units, 1);
}

TEST_F(RecordedBusTest, FloodOfSessionsIsBoundedAndCounted) {
  Open();
  Drain();
  for (std::size_t i = 0; i < BusSource::kMostSessions + 5; ++i)
    script.Came({"f" + std::to_string(i), "u", "", "", "user"});
  Drain();
  std::uint64_t lost = 0;
  for (const Observation& one : last) lost += one.lost;
  EXPECT_EQ(lost, 6U);
}

}  // namespace
}  // namespace zendrix::agent
