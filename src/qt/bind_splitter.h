// A logical splitter as a bar that the mouse drags and the arrow keys move.
#pragma once

#include <QWidget>

#include "qt/bind.h"
#include "widgets/splitter.h"

namespace zendrix::qt {

class SplitterBar : public QWidget {
 public:
  SplitterBar(widgets::Splitter& bar, const QString& accessible_name, const Toolkit& kit);

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void Drag(int twips);

  widgets::Splitter& bar_;
  Toolkit kit_;
};

}  // namespace zendrix::qt
