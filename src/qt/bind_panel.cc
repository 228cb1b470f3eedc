#include "qt/bind_panel.h"

#include <QLabel>
#include <QResizeEvent>

#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

class PanelLabel : public QLabel {
 public:
  PanelLabel(widgets::Panel& panel, const QString& accessible_name) : panel_(panel) {
    setTextFormat(Qt::PlainText);
    setContentsMargins(6, 2, 6, 2);
    BindControl(panel, this);
    Reflect(this, panel.text, [this, accessible_name](const std::string& text) {
      setText(ToQt(text));
      setAccessibleName(text.empty() ? accessible_name : accessible_name + QStringLiteral(": ") + ToQt(text));
    });
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    panel_.width = width() * kTwipsPerPixel;
  }

 private:
  widgets::Panel& panel_;
};

}  // namespace

QLabel* MakePanel(widgets::Panel& panel, const QString& accessible_name) {
  return new PanelLabel(panel, accessible_name);
}

}  // namespace zendrix::qt
