// A logical splitter as a bar that the mouse drags and the arrow keys move. Assistive programs know it as a
// separator with a value, the place of its top in the window, which they may change.
#pragma once

#include <QWidget>

#include "qt/bind.h"
#include "widgets/splitter.h"

namespace zendrix::qt {

class SplitterBar : public QWidget {
 public:
  SplitterBar(widgets::Splitter& bar, const QString& accessible_name, const Toolkit& kit);

  // Pixels from the top of the form; a place that the form does not allow changes nothing.
  int Place() const;
  void MoveTo(int place);

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
