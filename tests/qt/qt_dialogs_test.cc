#include "qt/qt_dialogs.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "support/temporary_folder.h"

namespace zendrix::qt {
namespace {

using platform::BoxAnswer;
using platform::BoxButtons;
using platform::BoxIcon;

class QtDialogsTest : public ::testing::Test {
 protected:
  QtDialogsTest() {
    owner_->show();
    owner_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(owner_.get()));
  }

  // Runs `act` when a dialog of this kind is open.
  template <class Dialog>
  void WhileOpen(std::function<void(Dialog&)> act) {
    auto* again = new QTimer(&anchor_);
    QObject::connect(again, &QTimer::timeout, again, [=] {
      auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
      if (!dialog) return;
      again->deleteLater();
      act(*dialog);
    });
    again->start(1);
  }
  void GoWith(const QWidget& dialog) {
    EXPECT_EQ(dialog.parentWidget(), owner_.get());
    QPointer<const QWidget> gone = &dialog;
    owner_.reset();
    EXPECT_TRUE(gone.isNull());
  }

  QObject anchor_;
  std::unique_ptr<QWidget> owner_ = std::make_unique<QWidget>();
  QtMessageBoxes boxes_;
  QtFileDialogs files_;
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  QtColourDialogs colours_{theme_};
  const platform::BoxRequest question_{"Zendrix", "<b>Sure?</b>\r\nReally?", BoxIcon::kExclamation,
                                       BoxButtons::kYesNo};
};

TEST_F(QtDialogsTest, QuestionShowsItsTextPlainAndGivesTheButton) {
  WhileOpen<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.text(), QStringLiteral("<b>Sure?</b>\nReally?"));
    EXPECT_EQ(box.icon(), QMessageBox::Warning);
    EXPECT_EQ(box.standardButton(box.defaultButton()), QMessageBox::No);
    box.button(QMessageBox::Yes)->click();
  });
  EXPECT_EQ(boxes_.Show(question_), BoxAnswer::kYes);
  WhileOpen<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(boxes_.Show(question_), BoxAnswer::kNo);
  WhileOpen<QMessageBox>([](QMessageBox& box) {
    EXPECT_FALSE(box.button(QMessageBox::Yes));
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  EXPECT_EQ(boxes_.Show({"Zendrix", "Done."}), BoxAnswer::kOk);
  EXPECT_TRUE(owner_->findChildren<QMessageBox*>().isEmpty());
}

// The box stood on the stack and was its owner's child: it was destroyed twice.
TEST_F(QtDialogsTest, QuestionWhoseOwnerGoesMeanwhileIsAnsweredWithNo) {
  WhileOpen<QMessageBox>([this](QMessageBox& box) { GoWith(box); });
  EXPECT_EQ(boxes_.Show(question_), BoxAnswer::kNo);
}

TEST_F(QtDialogsTest, MessageWhoseOwnerGoesMeanwhileEnds) {
  WhileOpen<QMessageBox>([this](QMessageBox& box) { GoWith(box); });
  EXPECT_EQ(boxes_.Show({"Zendrix", "Done."}), BoxAnswer::kOk);
}

TEST_F(QtDialogsTest, FileDialogWhoseOwnerGoesMeanwhileChoosesNothing) {
  for (const bool saving : {false, true}) {
    if (!owner_) {
      owner_ = std::make_unique<QWidget>();
      owner_->show();
      owner_->activateWindow();
      ASSERT_TRUE(QTest::qWaitForWindowActive(owner_.get()));
    }
    WhileOpen<QFileDialog>([this](QFileDialog& dialog) { GoWith(dialog); });
    EXPECT_EQ(files_.Choose({"Open", "/", "All files|*.*", "", saving}), "");
  }
}

TEST_F(QtDialogsTest, FileDialogBeginsInItsFolderWithItsNameAndFilters) {
  const zendrix::test::TemporaryFolder folder;
  const std::string base = folder.path();
  platform::FileRequest request{"Save As", base, "Logs|*.kvl;*.log|All files|*", "copy.kvl", true};
  WhileOpen<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Save As"));
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(dialog.nameFilters(),
              QStringList({QStringLiteral("Logs (*.kvl *.log)"), QStringLiteral("All files (*)")}));
    EXPECT_EQ(dialog.directory().path().toStdString(), base);
    static_cast<QDialog&>(dialog).accept();
  });
  EXPECT_EQ(files_.Choose(request), base + "/copy.kvl");
  WhileOpen<QFileDialog>([&](QFileDialog& dialog) { dialog.reject(); });
  EXPECT_EQ(files_.Choose(request), "");
  request.saving = false;
  request.filter = "All Files (*.*)|*.*|kvl Files (*.kvl)|*.kvl";
  request.filter_index = 2;
  WhileOpen<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(dialog.selectedNameFilter().trimmed(), QStringLiteral("kvl Files (*.kvl)"));
    EXPECT_EQ(dialog.nameFilters()[0], QStringLiteral("All Files (*.*) (*)")) << "also those without a dot";
    dialog.reject();
  });
  EXPECT_EQ(files_.Choose(request), "");
}

TEST_F(QtDialogsTest, ColourDialogBeginsWithTheColourAndGivesTheOneThatIsTaken) {
  WhileOpen<QColorDialog>([](QColorDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Selected Color"));
    EXPECT_EQ(dialog.currentColor(), QColor(0x30, 0x20, 0x10));
    dialog.setCurrentColor(QColor(1, 2, 3));
    static_cast<QDialog&>(dialog).accept();
  });
  EXPECT_EQ(colours_.Choose({"Selected Color", 0x102030}), 0x030201u);
  WhileOpen<QColorDialog>([](QColorDialog& dialog) {
    dialog.setCurrentColor(QColor(1, 2, 3));
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(colours_.Choose({"Selected Color", 0x102030}), std::nullopt);
}

TEST_F(QtDialogsTest, ColourDialogBeginsWithAColourOfTheDesktopAsItLooks) {
  WhileOpen<QColorDialog>([this](QColorDialog& dialog) {
    EXPECT_EQ(dialog.currentColor(), theme_.tokens().text);
    dialog.reject();
  });
  EXPECT_EQ(colours_.Choose({"Color", widgets::kSystemButtonText}), std::nullopt);
}

TEST_F(QtDialogsTest, ColourDialogWhoseOwnerGoesMeanwhileChoosesNothing) {
  WhileOpen<QColorDialog>([this](QColorDialog& dialog) { GoWith(dialog); });
  EXPECT_EQ(colours_.Choose({"Color", 0}), std::nullopt);
}

}  // namespace
}  // namespace zendrix::qt
