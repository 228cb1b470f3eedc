#include "qt/bind_panel.h"

#include <QLabel>
#include <QProgressBar>
#include <QResizeEvent>

#include "qt/paced.h"
#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

class PanelLabel : public QLabel {
 public:
  PanelLabel(widgets::Panel& panel, QString accessible_name)
      : panel_(panel), name_(std::move(accessible_name)), text_(this, [this] { ShowText(); }) {
    setTextFormat(Qt::PlainText);
    setContentsMargins(6, 2, 6, 2);
    BindControl(panel, this);
    Keep(this, panel.text.changed.Connect([this] { text_.Changed(); }));
    ShowText();
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    panel_.width = width() * kTwipsPerPixel;
  }

 private:
  void ShowText() {
    const QString text = ToQt(panel_.text.Get());
    setText(text);
    setAccessibleName(text.isEmpty() ? name_ : name_ + QStringLiteral(": ") + text);
  }

  widgets::Panel& panel_;
  QString name_;
  Paced text_;
};

}  // namespace

QLabel* MakePanel(widgets::Panel& panel, const QString& accessible_name) {
  return new PanelLabel(panel, accessible_name);
}

QProgressBar* MakeProgressBar(widgets::ProgressBar& bar, const QString& accessible_name) {
  constexpr int kWidth = 140;
  auto* const widget = new QProgressBar;
  widget->setTextVisible(false);
  widget->setFixedWidth(kWidth);
  widget->setRange(0, 100);
  BindControl(bar, widget, accessible_name);
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
  const auto show = [widget, &bar] {
    widget->setValue(bar.value);
    widget->setVisible(bar.value > 0);
  };
  auto* const paced = new Paced(widget, show);
  Keep(widget, bar.value.changed.Connect([paced] { paced->Changed(); }));
  show();
  return widget;
}

}  // namespace zendrix::qt
