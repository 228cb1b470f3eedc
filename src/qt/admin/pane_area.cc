#include "qt/admin/pane_area.h"

#include <QMainWindow>
#include <QMenuBar>

namespace zendrix::qt {

namespace {

constexpr int kMargin = 8;

int MenuHeight(const QWidget* window) {
  const auto* const main = qobject_cast<const QMainWindow*>(window);
  return main && main->menuWidget() ? main->menuWidget()->height() : 0;
}

}  // namespace

PaneArea::PaneArea(admin::frmMain& form, QWidget* banner, const Toolkit& kit)
    : form_(form), banner_(banner), kit_(kit) {
  banner_->setParent(this);
  Keep(this, form_.panes.changed.Connect([this] { PlacePanes(); }));
}

void PaneArea::Put(admin::PanePlace admin::PanePlaces::*place, QWidget* widget) {
  const bool hidden = widget->testAttribute(Qt::WA_WState_ExplicitShowHide) && widget->isHidden();
  widget->setParent(this);
  if (!hidden) widget->show();
  panes_.emplace_back(place, widget);
}

int PaneArea::Top() const {
  return (mapTo(window(), QPoint()).y() - MenuHeight(window())) * kTwipsPerPixel;
}

void PaneArea::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  TellRoom();
}

void PaneArea::TellRoom() {
  int below_banner = kMargin;
  if (!banner_->isHidden()) {
    const int width = this->width() - 2 * kMargin;
    const int height = banner_->hasHeightForWidth() ? banner_->heightForWidth(width)  //
                                                    : banner_->sizeHint().height();
    banner_->setGeometry(kMargin, kMargin, width, height);
    below_banner += height + kMargin;
  }
  admin::PaneRoom room;
  room.width = width() * kTwipsPerPixel;
  room.height = (window()->height() - MenuHeight(window())) * kTwipsPerPixel;
  room.top = Top() + below_banner * kTwipsPerPixel;
  room.bottom = Top() + height() * kTwipsPerPixel;
  kit_.guard(form_.name(), [&] { form_.Form_Resize(room); });
}

void PaneArea::PlacePanes() {
  const int top = Top();
  for (const auto& [member, widget] : panes_) {
    const admin::PanePlace& place = form_.panes.Get().*member;
    widget->setGeometry(place.left / kTwipsPerPixel, (place.top - top) / kTwipsPerPixel,
                        place.width / kTwipsPerPixel, place.height / kTwipsPerPixel);
  }
}

}  // namespace zendrix::qt
