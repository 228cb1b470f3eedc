// Binds a logical chart: a line for each series, markers where it is not 0, and, where the chart asks for it,
// a list of the series. It is drawn when it is first seen, and again when its table or the palette changes.
// All texts are plain. Row labels that have no room are left out. Names and values are also told in words,
// for a screen reader.
//
// At most kMostSeries series are drawn, the first ones; the words tell of the others.
#pragma once

#include <QChartView>

#include "qt/bind.h"
#include "qt/chart_axes.h"
#include "widgets/chart.h"

class QValueAxis;

namespace zendrix::qt {

class ChartView : public QChartView {
 public:
  static constexpr int kMostSeries = 31;

  ChartView(widgets::Chart& chart, const QString& accessible_name, const Toolkit& kit);

 protected:
  void showEvent(QShowEvent* event) override;
  // How many steps of the scale have room.
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  // Row labels and the title below them: the chart's own axis would read them as markup.
  void drawForeground(QPainter* painter, const QRectF& exposed) override;

 private:
  void Dress();
  void DrawNow();
  void SetScales();
  void MakeRoomBelow();

  widgets::Chart& chart_;
  Toolkit kit_;
  QValueAxis* across_;
  QValueAxis* up_;
  bool drawn_ = false;
};

}  // namespace zendrix::qt
