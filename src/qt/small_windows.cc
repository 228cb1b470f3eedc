#include "qt/small_windows.h"

#include <QApplication>
#include <QBoxLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>

#include "qt/bind_label.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

QPushButton* FlatButton(const char* name, const QString& text) {
  auto* button = new QPushButton(text);
  button->setObjectName(QString::fromLatin1(name));
  button->setProperty("role", QStringLiteral("flat"));
  return button;
}

}  // namespace

SplashWindow::SplashWindow(core::frmSplash& form, const Toolkit& kit) : QWidget(nullptr, Qt::SplashScreen) {
  setObjectName(QStringLiteral("splash"));
  setAccessibleName(ToQt(form.name()));
  setAttribute(Qt::WA_StyledBackground);
  setFixedSize(520, 300);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(32, 32, 32, 24);
  column->setSpacing(6);
  auto* mark = new QLabel;
  mark->setPixmap(kit.pictures.Pixmap(QStringLiteral("icon"), 72, devicePixelRatioF()));
  column->addWidget(mark);
  column->addSpacing(12);
  column->addWidget(MakeLabel(form.lblProductName, kit));
  column->addWidget(MakeLabel(form.lblVersion, kit));
  column->addStretch(1);
  auto* bar = new QProgressBar;
  bar->setTextVisible(false);
  bar->setRange(0, 100);
  BindControl(form.PBar, bar, QStringLiteral("Loading"));
  Reflect(bar, form.PBar.value, [bar](int percent) { bar->setValue(percent); });
  column->addWidget(bar);
  column->addSpacing(8);
  for (widgets::Label* line : {&form.lblCopyright, &form.lblWarranty})
    column->addWidget(MakeLabel(*line, kit));
  // The program's title is the task's; the splash has no frame to show it in.
  Reflect(this, form.title, [this](const std::string& text) { setWindowTitle(ToQt(text)); });
  Keep(this, form.visible.changed.Connect([this, &form] { setVisible(form.visible); }));
  // The load behind it serves no events until its first lines are read.
  Keep(this, form.repaint.Connect([] { QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }));
  if (const QScreen* on = QGuiApplication::primaryScreen())
    move(on->availableGeometry().center() - rect().center());
}

MessageWindow::MessageWindow(core::frmMsg& form, const Toolkit& kit) : FormDialog(form, kit) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(24, 20, 24, 18);
  column->setSpacing(16);
  QLabel* message = MakeLabel(form.lblMsg, kit);
  message->setMinimumWidth(360);
  column->addWidget(message);
  QPushButton* ok = FlatButton("cmdOK", QStringLiteral("OK"));
  column->addWidget(ok, 0, Qt::AlignRight);
  connect(ok, &QPushButton::clicked, this,
          [&form, guard = &kit.guard] { (*guard)(form.name(), [&] { form.cmdOK_Click(); }); });
}

AboutWindow::AboutWindow(core::frmAbout& form, const Toolkit& kit) : FormDialog(form, kit) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(28, 24, 28, 20);
  column->setSpacing(8);
  auto* head = new QHBoxLayout;
  head->setSpacing(16);
  auto* mark = new QLabel;
  mark->setPixmap(kit.pictures.Pixmap(QStringLiteral("icon"), 56, devicePixelRatioF()));
  head->addWidget(mark, 0, Qt::AlignTop);
  auto* words = new QVBoxLayout;
  QLabel* title = MakeLabel(form.lblTitle, kit);
  title->setMinimumWidth(300);
  title->setStyleSheet(QStringLiteral("font-size: 14pt; font-weight: 600"));
  words->addWidget(title);
  words->addWidget(MakeLabel(form.lblVersion, kit));
  head->addLayout(words, 1);
  column->addLayout(head);
  column->addSpacing(12);
  auto* buttons = new QHBoxLayout;
  QPushButton* info = FlatButton("cmdSysInfo", QStringLiteral("System Info..."));
  QPushButton* ok = FlatButton("cmdOK", QStringLiteral("OK"));
  ok->setDefault(true);
  buttons->addStretch(1);
  buttons->addWidget(info);
  buttons->addWidget(ok);
  column->addLayout(buttons);
  connect(info, &QPushButton::clicked, this,
          [&form, guard = &kit.guard] { (*guard)(form.name(), [&] { form.cmdSysInfo_Click(); }); });
  connect(ok, &QPushButton::clicked, this,
          [&form, guard = &kit.guard] { (*guard)(form.name(), [&] { form.cmdOK_Click(); }); });
}

}  // namespace zendrix::qt
