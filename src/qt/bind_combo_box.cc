#include "qt/bind_combo_box.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QPainter>

#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

class DropDownList : public QComboBox {
 public:
  DropDownList(widgets::ComboBox& box, const QString& accessible_name, QString picture_list,
               const Toolkit& kit)
      : box_(box), picture_list_(std::move(picture_list)), kit_(kit) {
    BindControl(box, this, accessible_name);
    setMinimumHeight(kFieldHeight);
    setPlaceholderText(QStringLiteral("Any"));
    ShowEntries();
    Keep(this, box.filled.Connect([this] { ShowEntries(); }));
    Keep(this, box.changed.Connect([this] { ShowChoice(); }));
    connect(this, &QComboBox::activated, this,
            [this](int index) { kit_.guard(box_.name(), [&] { box_.Choose(index); }); });
  }

  void showPopup() override {
    Open();
    QComboBox::showPopup();
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
      return kit_.guard(box_.name(), [&] { box_.Clear(); });
    if (event->key() != Qt::Key_Tab) Open();
    QComboBox::keyPressEvent(event);
  }
  // The look of the program frames whatever has the keyboard.
  void paintEvent(QPaintEvent* event) override {
    QComboBox::paintEvent(event);
    if (!hasFocus()) return;
    constexpr double kEdge = 0.5, kRounding = 3;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(kit_.theme.tokens().link);
    painter.drawRoundedRect(QRectF(rect()).adjusted(kEdge, kEdge, -kEdge, -kEdge), kRounding, kRounding);
  }
  // A turn of the wheel that passes by is no choice.
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }

 private:
  void Open() {
    kit_.guard(box_.name(), [&] { box_.Open(); });
  }
  void ShowEntries() {
    clear();
    for (const auto& [text, picture] : box_.entries())
      addItem(kit_.pictures.Numbered(picture_list_, picture), ToQt(text));
    ShowChoice();
  }
  void ShowChoice() { setCurrentIndex(box_.index()); }

  widgets::ComboBox& box_;
  QString picture_list_;
  Toolkit kit_;
};

}  // namespace

QComboBox* MakeComboBox(widgets::ComboBox& box, const QString& accessible_name, const QString& picture_list,
                        const Toolkit& kit) {
  return new DropDownList(box, accessible_name, picture_list, kit);
}

}  // namespace zendrix::qt
