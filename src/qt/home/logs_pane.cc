#include "qt/home/logs_pane.h"

#include <QBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

#include "qt/bind_label.h"
#include "qt/bind_list_view.h"
#include "qt/bind_option_button.h"
#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

// A message as long as the log holds it, in a place of a few lines: whoever writes one must not be able to
// stretch the window.
QWidget* MakeText(widgets::Label& label) {
  constexpr int kLines = 4;
  auto* text = new QPlainTextEdit;
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  text->setFrameShape(QFrame::NoFrame);
  text->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  text->setUndoRedoEnabled(false);
  text->setFixedHeight(text->fontMetrics().lineSpacing() * kLines +
                       2 * static_cast<int>(text->document()->documentMargin()));
  BindControl(label, text, QStringLiteral("Message"));
  Reflect(text, label.caption, [text](const std::string& now) { text->setPlainText(ToQt(now)); });
  return text;
}

}  // namespace

QWidget* MakeLogs(home::LogsPane& pane, const Toolkit& kit) {
  auto* widget = new QWidget;
  auto* column = new QVBoxLayout(widget);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kPaneGap);
  auto* tools = new QHBoxLayout;
  tools->setSpacing(kPaneGap);
  tools->addWidget(MakeOptionButton(pane.aAgStatus, kit));
  tools->addWidget(MakeOptionButton(pane.aUIError, kit));
  tools->addStretch(1);
  tools->addWidget(MakeButton(pane.aShowAll, "flat", kit));
  tools->addWidget(MakeButton(pane.aClearAll, "flat", kit));
  column->addLayout(tools);
  auto* list = new ListTable(pane.alvAgErrLog, QStringLiteral("h3"), QStringLiteral("Log"),
                             QStringLiteral("No messages that you have not marked as deleted."), kit);
  column->addWidget(list, 1);
  auto* message = new QVBoxLayout;
  message->addWidget(MakeText(pane.aDesc));
  column->addWidget(Card(message));
  return widget;
}

}  // namespace zendrix::qt
