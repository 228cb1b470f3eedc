#include "qt/bind_date_time_box.h"

#include <gmock/gmock.h>

#include <QBoxLayout>
#include <QCheckBox>
#include <QDateTimeEdit>
#include <QTest>

#include "support/console_world.h"

namespace zendrix::qt {
namespace {

constexpr widgets::DateTimeBox::Moment kMoment = 1'795'251'907;  // 2026-11-21 09:05:07

TEST(DateTimePictureTest, SaysTheSameInTheToolkitsVocabulary) {
  const std::pair<const char*, const char*> pictures[] = {
      {"MM/dd/yyyy hh:mm:ss tt", "MM/dd/yyyy hh:mm:ss AP"}, {"dd.MM.yyyy HH:mm:ss", "dd.MM.yyyy HH:mm:ss"},
      {"d. MMM yy h:mm:ss t", "d. MMM yy h:mm:ss AP"},      {"yyyyy y HHH", "yyyy yy HH"},
      {"dd 'de' MMMM hh 'h' mm", "dd 'de' MMMM HH 'h' mm"},
  };
  for (const auto& [picture, made] : pictures) EXPECT_EQ(DateTimePicture(picture).toStdString(), made);
}

class DateTimeBoxBindingTest : public ::testing::Test {
 protected:
  DateTimeBoxBindingTest() {
    box_.proposal = [] { return kMoment; };
    field_ = MakeDateTimeBox(box_, QStringLiteral("From"), QLatin1Char('F'), kit_);
    auto* row = new QHBoxLayout(&window_);
    row->addWidget(field_.given);
    row->addWidget(field_.moment);
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_, 60'000));
  }

  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  Toolkit kit_{guard_, pictures_, theme_};
  widgets::DateTimeBox box_{"FromDate"};
  QWidget window_;
  DateTimeField field_{};
};

TEST_F(DateTimeBoxBindingTest, IsBlankAndOutOfUseWithoutAMoment) {
  EXPECT_FALSE(field_.given->isChecked());
  EXPECT_FALSE(field_.moment->isEnabled());
  EXPECT_EQ(field_.moment->text().trimmed(), QString());
  EXPECT_EQ(field_.given->objectName(), QStringLiteral("FromDate"));
  EXPECT_EQ(field_.given->accessibleName(), QStringLiteral("From"));
  EXPECT_EQ(field_.moment->accessibleName(), QStringLiteral("From date and time"));
}

TEST_F(DateTimeBoxBindingTest, TickBeginsWithTheProposalAndClearsAgain) {
  field_.given->click();
  EXPECT_EQ(box_.moment.Get(), kMoment);
  EXPECT_TRUE(field_.moment->isEnabled());
  EXPECT_EQ(field_.moment->text(), QStringLiteral("11/21/2026 09:05:07 AM"));
  field_.given->click();
  EXPECT_FALSE(box_.moment.Get());
  EXPECT_EQ(field_.moment->text().trimmed(), QString());
}

TEST_F(DateTimeBoxBindingTest, MomentIsChangedByTheKeyboard) {
  box_.Pick(kMoment);
  field_.moment->setFocus();
  field_.moment->setCurrentSection(QDateTimeEdit::SecondSection);
  QTest::keyClick(field_.moment, Qt::Key_Up);
  EXPECT_EQ(box_.moment.Get(), kMoment + 1);
  field_.moment->setCurrentSection(QDateTimeEdit::DaySection);
  QTest::keyClick(field_.moment, Qt::Key_Down);
  EXPECT_EQ(box_.moment.Get(), kMoment + 1 - 86'400);
}

// Each digit was a new moment, which the logic put back into the field in the middle of what was typed.
TEST_F(DateTimeBoxBindingTest, MomentIsTypedFromItsBeginningToItsEnd) {
  field_.moment->setFocus();
  for (const char* typed : {"11/20/2025 01:45:03 PM", "11202025014503p"}) {
    SCOPED_TRACE(typed);
    box_.Pick(kMoment);
    field_.moment->setSelectedSection(QDateTimeEdit::MonthSection);
    for (const char* c = typed; *c; ++c) {
      if (*c == ':') QTest::keyPress(field_.moment, Qt::Key_Shift);
      QTest::keyClick(field_.moment, *c);
    }
    EXPECT_EQ(field_.moment->text().toStdString(), "11/20/2025 01:45:03 PM");
    EXPECT_EQ(box_.moment.Get(), 1'763'646'303);
  }
  field_.moment->setSelectedSection(QDateTimeEdit::MonthSection);
  QTest::keyClicks(field_.moment, QStringLiteral("3/4/2026 9:05:07 ax"));
  EXPECT_EQ(field_.moment->text().toStdString(), "03/04/2026 09:05:07 AM");
}

TEST_F(DateTimeBoxBindingTest, LogicPutsAMomentAndAPicture) {
  box_.Pick(-1);
  EXPECT_TRUE(field_.given->isChecked());
  EXPECT_EQ(field_.moment->text(), QStringLiteral("12/31/1969 11:59:59 PM"));
  box_.picture = "dd.MM.yyyy HH:mm:ss";
  EXPECT_EQ(field_.moment->text(), QStringLiteral("31.12.1969 23:59:59"));
  EXPECT_EQ(box_.moment.Get(), -1);
  box_.Empty();
  EXPECT_FALSE(field_.given->isChecked());
}

}  // namespace
}  // namespace zendrix::qt
