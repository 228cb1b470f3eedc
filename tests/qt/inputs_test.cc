#include <gmock/gmock.h>

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QTabBar>
#include <QTest>

#include "qt/bind_check_box.h"
#include "qt/bind_label.h"
#include "qt/bind_menu.h"
#include "qt/bind_slider.h"
#include "qt/bind_tabs.h"
#include "qt/bind_text_box.h"
#include "qt/text_edge.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;

class InputsTest : public ::testing::Test {
 protected:
  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  Toolkit kit_{guard_, pictures_, theme_};
};

// Two fields and a button in a window.
class TextFieldTest : public InputsTest {
 protected:
  TextFieldTest() {
    auto* column = new QVBoxLayout(&window_);
    first_ = MakeTextBox(one_, QStringLiteral("One"), kit_);
    second_ = MakeTextBox(two_, QStringLiteral("Two"), kit_);
    for (QWidget* widget : std::initializer_list<QWidget*>{first_, second_, &button_})
      column->addWidget(widget);
    one_.valid = [this] {
      ++asked_;
      return one_.text.Get() != "bad";
    };
    QObject::connect(&button_, &QPushButton::clicked, &button_, [this] { ++presses_; });
    window_.show();
    QApplication::setActiveWindow(&window_);
    // The first field has the keyboard already, as the window's own choice.
    button_.setFocus(Qt::OtherFocusReason);
    first_->setFocus(Qt::TabFocusReason);
  }
  widgets::TextBox one_{"Email"}, two_{"Server"};
  QWidget window_;
  QPushButton button_{QStringLiteral("press")};
  QLineEdit* first_;
  QLineEdit* second_;
  int asked_ = 0, presses_ = 0;
};

TEST_F(TextFieldTest, KeyboardComesWithTheWholeTextMarked) {
  two_.text = "mail.example.org";
  second_->setFocus(Qt::OtherFocusReason);
  EXPECT_EQ(second_->selectedText(), QStringLiteral("mail.example.org"));
  EXPECT_TRUE(two_.has_keyboard());
  EXPECT_FALSE(one_.has_keyboard());
}

TEST_F(TextFieldTest, ClickMarksTheWholeTextOnceAndThenPutsTheCursor) {
  two_.text = "mail.example.org";
  QTest::mouseClick(second_, Qt::LeftButton, {}, second_->rect().center());
  EXPECT_EQ(second_->selectedText(), QStringLiteral("mail.example.org"));
  QTest::mouseClick(second_, Qt::LeftButton, {}, second_->rect().center());
  EXPECT_FALSE(second_->hasSelectedText());
}

TEST_F(TextFieldTest, KeysReachTheLogicAndTheLogicIsShown) {
  QTest::keyClicks(first_, QStringLiteral("ab"));
  EXPECT_EQ(one_.text.Get(), "ab");
  one_.text = "other";
  EXPECT_EQ(first_->text(), QStringLiteral("other"));
}

TEST_F(TextFieldTest, CharacterThatNoFileCanHoldIsShownAsWhatBecameOfIt) {
  first_->insert(QString(QChar(0x0416)));
  EXPECT_EQ(first_->text(), ToQt(one_.text.Get()));
  EXPECT_FALSE(first_->text().contains(QChar(0x0416)));
  first_->selectAll();
  first_->insert(QString(QChar(0x0416)));
  EXPECT_EQ(first_->text(), ToQt(one_.text.Get()));
}

TEST_F(TextFieldTest, BadTextKeepsTheKeyboardAgainstTab) {
  one_.text = "bad";
  QTest::keyClick(first_, Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), first_);
  EXPECT_EQ(asked_, 1);
  EXPECT_EQ(first_->selectedText(), QStringLiteral("bad"));
  one_.text = "good";
  QTest::keyClick(first_, Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), second_);
}

TEST_F(TextFieldTest, ClickThatABadTextRefusesDoesNothingElse) {
  one_.text = "bad";
  QTest::mouseClick(&button_, Qt::LeftButton);
  EXPECT_EQ(presses_, 0);
  EXPECT_EQ(QApplication::focusWidget(), first_);
  EXPECT_FALSE(button_.isDown());
  one_.text = "good";
  QTest::mouseClick(&button_, Qt::LeftButton);
  EXPECT_EQ(presses_, 1);
  EXPECT_EQ(QApplication::focusWidget(), &button_);
}

TEST_F(TextFieldTest, FieldThatGotTheKeyboardOnlyOnItsWayBackIsNotAsked) {
  two_.valid = [this] {
    ++asked_;
    return false;
  };
  one_.text = "bad";
  QTest::mouseClick(second_, Qt::LeftButton);
  EXPECT_EQ(asked_, 1);
  EXPECT_EQ(QApplication::focusWidget(), first_);
}

TEST_F(TextFieldTest, AnotherWindowIsNoLeaving) {
  one_.text = "bad";
  QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
  QApplication::sendEvent(first_, &away);
  QFocusEvent menu(QEvent::FocusOut, Qt::PopupFocusReason);
  QApplication::sendEvent(first_, &menu);
  EXPECT_EQ(asked_, 0);
  EXPECT_TRUE(one_.has_keyboard());
}

// The pane of a field is hidden when a pop-up leads to the alert list; a box would stand in the way there.
TEST_F(TextFieldTest, FieldThatIsHiddenOrDisabledIsNotAsked) {
  one_.text = "bad";
  one_.visible = false;
  EXPECT_EQ(asked_, 0);
  EXPECT_FALSE(one_.has_keyboard());
  one_.visible = true;
  first_->setFocus(Qt::OtherFocusReason);
  ASSERT_TRUE(one_.has_keyboard());
  one_.enabled = false;
  EXPECT_EQ(asked_, 0);
  EXPECT_FALSE(one_.has_keyboard());
}

class DigitsTest : public InputsTest {
 protected:
  DigitsTest() : field_(MakeTextBox(box_, QStringLiteral("Port"), kit_)) {
    box_.takes = [](char key) { return key >= '0' && key <= '9'; };
    box_.refused.ConnectForever([this] { ++refused_; });
  }
  widgets::TextBox box_{"Port"};
  std::unique_ptr<QLineEdit> field_;
  int refused_ = 0;
};

TEST_F(DigitsTest, OtherKeysAreDroppedAndReported) {
  QTest::keyClicks(field_.get(), QStringLiteral("2x5-"));
  EXPECT_EQ(box_.text.Get(), "25");
  EXPECT_EQ(refused_, 2);
  QTest::keyClick(field_.get(), Qt::Key_Backspace);
  EXPECT_EQ(box_.text.Get(), "2");
  EXPECT_EQ(refused_, 2);
}

TEST_F(DigitsTest, PastedTextIsTakenOnlyWhenAllOfItIs) {
  QApplication::clipboard()->setText(QStringLiteral("58x7"));
  field_->paste();
  EXPECT_EQ(box_.text.Get(), "");
  EXPECT_EQ(refused_, 1);
  QApplication::clipboard()->setText(QStringLiteral("587"));
  field_->paste();
  EXPECT_EQ(box_.text.Get(), "587");
}

TEST_F(DigitsTest, TextOfTheProgramThatIsNoNumberIsShownAndCanOnlyGetBetter) {
  box_.text = "smtp";
  EXPECT_EQ(field_->text(), QStringLiteral("smtp"));
  QTest::keyClicks(field_.get(), QStringLiteral("x"));
  EXPECT_EQ(box_.text.Get(), "smtp");
  QTest::keyClick(field_.get(), Qt::Key_End);
  QTest::keyClick(field_.get(), Qt::Key_Backspace);
  EXPECT_EQ(box_.text.Get(), "smt");
}

TEST_F(InputsTest, SliderGoesBothWaysInItsSteps) {
  widgets::Slider slider("eSbSensitivity", 100, 1000, 5, 50);
  slider.value = 110;
  const std::unique_ptr<QSlider> widget(MakeSlider(slider, QStringLiteral("Sensitivity"), kit_));
  EXPECT_EQ(widget->value(), 110);
  QTest::keyClick(widget.get(), Qt::Key_Right);
  EXPECT_EQ(slider.value.Get(), 115);
  QTest::keyClick(widget.get(), Qt::Key_PageUp);
  EXPECT_EQ(slider.value.Get(), 165);
  QTest::keyClick(widget.get(), Qt::Key_End);
  EXPECT_EQ(slider.value.Get(), 1000);
  slider.value = 100;
  EXPECT_EQ(widget->value(), 100);
  EXPECT_EQ(widget->accessibleName(), QStringLiteral("Sensitivity"));
}

TEST_F(InputsTest, TabsFollowTheBorderAndTellAClick) {
  widgets::Label one("etbOptionSel(0)", "Email Alerts"), two("etbOptionSel(1)", "Alert Settings");
  one.bordered = true;
  std::vector<std::string> clicked;
  for (widgets::Label* label : {&one, &two})
    label->clicked.ConnectForever([&, label] { clicked.push_back(label->name()); });
  const std::unique_ptr<QTabBar> bar(MakeTabs({&one, &two}, QStringLiteral("Options"), kit_));
  bar->show();
  EXPECT_EQ(bar->currentIndex(), 0);
  QTest::keyClick(bar.get(), Qt::Key_Right);
  EXPECT_THAT(clicked, ElementsAre("etbOptionSel(1)"));
  one.bordered = false;
  two.bordered = true;
  EXPECT_EQ(bar->currentIndex(), 1);
  two.bordered = false;
  one.bordered = true;
  EXPECT_EQ(bar->currentIndex(), 0);
  EXPECT_THAT(clicked, ElementsAre("etbOptionSel(1)")) << "what the logic shows is no click";
}

TEST_F(InputsTest, TabThatTheLogicRefusesIsNotShownAsTheCurrentOne) {
  widgets::Label one("tbsOptions(0)", "Monitors"), two("tbsOptions(1)", "Event view");
  one.bordered = true;
  two.tip = "Set <Options>";
  int asked = 0;
  two.clicked.ConnectForever([&] { ++asked; });
  const std::unique_ptr<QTabBar> bar(MakeTabs({&one, &two}, QStringLiteral("Options"), kit_));
  EXPECT_EQ(bar->tabToolTip(1), ToolTipText("Set <Options>"));
  bar->setCurrentIndex(1);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(bar->currentIndex(), 0);
}

TEST_F(InputsTest, MarkOfAMenuItemIsTheLogicsOwn) {
  widgets::MenuItem plain("mPopRestore", "&Open"), marked("mPopNotifyMs", "&Daily");
  marked.checkable = true;
  marked.begins_group = true;
  marked.checked = true;
  widgets::Menu menu("mPopupSys2", "", {&plain, &marked});
  QWidget owner;
  QMenu* widget = MakeMenu(menu, &owner, kit_);
  auto* action = widget->findChild<QAction*>(QStringLiteral("mPopNotifyMs"));
  ASSERT_NE(action, nullptr);
  EXPECT_FALSE(widget->findChild<QAction*>(QStringLiteral("mPopRestore"))->isCheckable());
  EXPECT_TRUE(widget->actions().at(1)->isSeparator());
  EXPECT_TRUE(action->isChecked());
  int clicks = 0;
  marked.clicked.ConnectForever([&] { ++clicks; });
  action->trigger();
  EXPECT_TRUE(action->isChecked()) << "until the setting has changed";
  QTest::qWait(0);
  EXPECT_EQ(clicks, 1);
  marked.checked = false;
  EXPECT_FALSE(action->isChecked());
}

TEST_F(InputsTest, AccessKeyIsTheFirstOfItsLetter) {
  EXPECT_EQ(WithAccessKey(QStringLiteral("Send Alerts To"), QLatin1Char('A')),
            QStringLiteral("Send &Alerts To"));
  EXPECT_EQ(WithAccessKey(QStringLiteral("this & That"), QLatin1Char('a')), QStringLiteral("this && Th&at"));
  EXPECT_EQ(WithAccessKey(QStringLiteral("a & b"), QLatin1Char('x')), QStringLiteral("a && b"));
  EXPECT_EQ(WithAccessKey(QStringLiteral("a & b"), QChar()), QStringLiteral("a && b"));
}

TEST_F(InputsTest, AmpersandInACaptionOfADescriptionIsShown) {
  widgets::CheckBox box("echkOrigHigh", "this & that");
  const std::unique_ptr<QCheckBox> widget(MakeCheckBox(box, kit_, QLatin1Char('h')));
  EXPECT_EQ(widget->text(), QStringLiteral("t&his && that"));
  EXPECT_EQ(widget->accessibleName(), QStringLiteral("this & that"));
}

TEST_F(InputsTest, FieldLabelLeadsToItsField) {
  widgets::Label label("elabel1", "Send Alerts To");
  QLineEdit field;
  const std::unique_ptr<QLabel> widget(MakeFieldLabel(label, &field, QLatin1Char('S'), kit_));
  EXPECT_EQ(widget->buddy(), &field);
  EXPECT_EQ(widget->text(), QStringLiteral("&Send Alerts To"));
  EXPECT_EQ(widget->textFormat(), Qt::PlainText);
}

}  // namespace
}  // namespace zendrix::qt
