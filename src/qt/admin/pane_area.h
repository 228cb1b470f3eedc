// The inside of the Administrator window, between toolbar and status bar. It tells the form what room there
// is, and puts every pane where the form wants it.
#pragma once

#include <QWidget>
#include <utility>
#include <vector>

#include "admin/frm_main.h"
#include "qt/bind.h"

namespace zendrix::qt {

class PaneArea : public QWidget {
 public:
  // `banner` stands above the panes while it is seen.
  PaneArea(admin::frmMain& form, QWidget* banner, const Toolkit& kit);

  // A widget for a place; several may share one. The area owns it.
  void Put(admin::PanePlace admin::PanePlaces::*place, QWidget* widget);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  // Twips from the window's inside to the area's top.
  int Top() const;
  void TellRoom();
  void PlacePanes();

  admin::frmMain& form_;
  QWidget* banner_;
  Toolkit kit_;
  std::vector<std::pair<admin::PanePlace admin::PanePlaces::*, QWidget*>> panes_;
};

}  // namespace zendrix::qt
