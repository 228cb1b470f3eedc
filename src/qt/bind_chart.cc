#include "qt/bind_chart.h"

#include <QGraphicsLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLegend>
#include <QToolTip>
#include <QValueAxis>
#include <algorithm>

#include "qt/accessible_role.h"
#include "qt/bind_click.h"
#include "qt/chart_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

constexpr int kPadding = 6;
constexpr double kHalf = 0.5;

double ValueOf(const std::optional<std::int32_t>& value) {
  return value.value_or(0);
}

}  // namespace

ChartView::ChartView(widgets::Chart& chart, const QString& accessible_name, const Toolkit& kit)
    : chart_(chart), kit_(kit), across_(new QValueAxis), up_(new QValueAxis) {
  setRenderHint(QPainter::Antialiasing);
  // The toolkit has the drawing inside the view take the keyboard as well.
  viewport()->setFocusPolicy(Qt::NoFocus);
  setFocusPolicy(Qt::StrongFocus);
  TellRole(this, QAccessible::Chart);
  QChart* const drawing = this->chart();
  drawing->layout()->setContentsMargins(0, 0, 0, 0);
  drawing->setBackgroundRoundness(0);
  drawing->addAxis(across_, Qt::AlignBottom);
  drawing->addAxis(up_, Qt::AlignLeft);
  across_->setLabelsVisible(false);
  across_->setGridLineVisible(false);
  across_->setTickCount(2);
  up_->setLabelFormat(QStringLiteral("%d"));
  QLegend* const legend = drawing->legend();
  legend->setVisible(chart.legend);
  legend->setAlignment(Qt::AlignRight);
  legend->setMarkerShape(QLegend::MarkerShapeFromSeries);
  BindControl(chart, this, accessible_name);
  if (chart.clickable) BindClick(chart.name(), chart.clicked, viewport(), kit);
  Dress();
  connect(&kit.theme, &Theme::Changed, this, [this] {
    Dress();
    DrawNow();
  });
  Keep(this, chart.table.changed.Connect([this] {
    drawn_ = false;
    if (isVisible()) DrawNow();
  }));
  Reflect(this, chart.axis_title, [this](const std::string&) { MakeRoomBelow(); });
}

void ChartView::Dress() {
  const Tokens& tokens = kit_.theme.tokens();
  chart()->setBackgroundBrush(tokens.base);
  chart()->legend()->setLabelColor(tokens.text);
  chart()->legend()->setFont(font());
  for (QValueAxis* axis : {across_, up_}) {
    axis->setLinePenColor(tokens.faint);
    axis->setGridLineColor(tokens.border);
    axis->setLabelsColor(tokens.text);
    axis->setLabelsFont(font());
  }
}

void ChartView::MakeRoomBelow() {
  const int lines = chart_.axis_title.Get().empty() ? 1 : 2;
  const int below = lines * (fontMetrics().lineSpacing() + kPadding);
  chart()->setMargins(QMargins(kPadding, 2 * kPadding, 2 * kPadding, below));
  viewport()->update();
}

void ChartView::showEvent(QShowEvent* event) {
  QChartView::showEvent(event);
  if (!drawn_) DrawNow();
}

void ChartView::resizeEvent(QResizeEvent* event) {
  QChartView::resizeEvent(event);
  SetScales();
}

void ChartView::DrawNow() {
  drawn_ = true;
  chart()->removeAllSeries();
  SetScales();
  const Theme& theme = kit_.theme;
  int index = 0;
  for (const widgets::ChartSeries& series : chart_.table.Get().series) {
    if (index == kMostSeries) break;
    AddSeries(*chart(), series, LookOfSeries(index++, theme.dark()), theme.tokens().base, fontMetrics());
  }
  setAccessibleDescription(ToQt(widgets::ChartInWords(chart_.table)));
  viewport()->update();
}

void ChartView::SetScales() {
  constexpr int kPixelsOfStep = 32, kMostSteps = 8;
  constexpr double kHeadroom = 1.05;
  double lowest = 0, highest = 0;
  for (const auto& series : chart_.table.Get().series) {
    for (const auto& value : series.values) {
      lowest = std::min(lowest, ValueOf(value));
      highest = std::max(highest, ValueOf(value));
    }
  }
  const ValueScale scale =
      ScaleOf(lowest, highest * kHeadroom, std::clamp(height() / kPixelsOfStep, 2, kMostSteps));
  up_->setRange(scale.low, scale.high);
  up_->setTickCount(scale.ticks());
  const auto rows = static_cast<double>(chart_.table.Get().labels.size());
  // Half a step at either end, and more than the highest value: no marker is cut in half.
  across_->setRange(-kHalf, std::max(rows, 1.0) - kHalf);
}

void ChartView::drawForeground(QPainter* painter, const QRectF&) {
  const widgets::ChartTable& table = chart_.table;
  const QRectF plot = chart()->plotArea();
  const QFontMetricsF metrics(font());
  painter->setFont(font());
  painter->setPen(kit_.theme.tokens().text);
  std::vector<QString> labels;
  std::vector<double> widths;
  for (const std::string& label : table.labels) {
    labels.push_back(ToQt(label).trimmed());
    widths.push_back(metrics.horizontalAdvance(labels.back()));
  }
  const double top = plot.bottom() + kPadding;
  const double half = plot.width() * kHalf / static_cast<double>(std::max<std::size_t>(labels.size(), 1));
  for (const PlacedLabel& label :
       LabelsWithRoom(widths, plot.left() + half, plot.right() - half, viewport()->width())) {
    const auto index = static_cast<std::size_t>(label.index);
    painter->drawText(QPointF(label.left, top + metrics.ascent()), labels[index]);
    painter->drawLine(QLineF(label.place, plot.bottom(), label.place, plot.bottom() + kPadding / 2));
  }
  const double room = plot.width();
  const QString title = metrics.elidedText(ToQt(chart_.axis_title.Get()), Qt::ElideRight, room);
  const QPointF below(plot.center().x() - metrics.horizontalAdvance(title) / 2,
                      top + metrics.lineSpacing() + kPadding + metrics.ascent());
  painter->drawText(below, title);
  if (table.series.empty()) painter->drawText(plot, Qt::AlignCenter, QStringLiteral("No monitor to show"));
}

void ChartView::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  const bool presses = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
  if (!chart_.clickable || !presses || event->isAutoRepeat()) return event->ignore();
  event->accept();
  kit_.guard(chart_.name(), [this] { chart_.clicked.Raise(); });
}

// The scene would look for a tip of its own.
bool ChartView::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QChartView::viewportEvent(event);
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), toolTip(), this);
  return true;
}

}  // namespace zendrix::qt
