// The band of the Summary pane: the status sentence with its flag on a gradient from the colour of the level
// at the left to the paper of the window at the right. The sentence can be read wherever it stands on it.
#pragma once

#include <QFrame>

#include "home/summary_pane.h"
#include "qt/bind.h"

class QLabel;

namespace zendrix::qt {

class StatusBand : public QFrame {
 public:
  StatusBand(home::SummaryPane& pane, const Toolkit& kit);

  // The ground at a share of the width, 0 at the left edge to 1 at the right.
  QColor ColourAt(double share) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor LeftColour() const;
  QColor Paper() const;
  void DressSentence();

  home::SummaryPane& pane_;
  Theme& theme_;
  QLabel* sentence_;
};

}  // namespace zendrix::qt
