#include "qt/chart_looks.h"

#include <QChart>
#include <QLegend>
#include <QLegendMarker>
#include <QLineSeries>
#include <array>

#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

constexpr std::array kLight = {"#0052A5", "#B45309", "#0F766E", "#A21CAF",
                               "#C0222B", "#475569", "#5E6B00", "#0369A1"};
constexpr std::array kDark = {"#86B9F2", "#F5A623", "#4ADE9F", "#E879F9",
                              "#F87171", "#CBD5E1", "#D4DC4E", "#38BDF8"};
constexpr std::array kDashes = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine,
                                Qt::DashDotDotLine};
constexpr std::array kMarkers = {
    QScatterSeries::MarkerShapeCircle,   QScatterSeries::MarkerShapeRectangle,
    QScatterSeries::MarkerShapeTriangle, QScatterSeries::MarkerShapeRotatedRectangle,
    QScatterSeries::MarkerShapeStar,     QScatterSeries::MarkerShapePentagon};

template <class List>
auto Cycled(const List& list, int index) {
  return list[static_cast<std::size_t>(index) % list.size()];
}

}  // namespace

SeriesLook LookOfSeries(int index, bool dark) {
  const char* const colour = dark ? Cycled(kDark, index) : Cycled(kLight, index);
  return {QColor(QLatin1String(colour)), Cycled(kDashes, index), Cycled(kMarkers, index)};
}

void AddSeries(QChart& chart, const widgets::ChartSeries& series, const SeriesLook& look,
               const QColor& ground, const QFontMetrics& metrics) {
  constexpr double kLineWidth = 2, kMarkerSize = 9;
  constexpr int kLongestName = 220;
  auto* line = new QLineSeries;
  auto* markers = new QScatterSeries;
  for (std::size_t row = 0; row < series.values.size(); ++row) {
    const QPointF point(static_cast<double>(row), series.values[row].value_or(0));
    if (series.values[row]) line->append(point);
    if (point.y() != 0) markers->append(point);
  }
  line->setPen(QPen(look.colour, kLineWidth, look.dash));
  markers->setMarkerShape(look.marker);
  markers->setMarkerSize(kMarkerSize);
  markers->setColor(look.colour);
  markers->setBorderColor(ground);
  // The list of series reads names as markup.
  const QString name = metrics.elidedText(ToQt(series.name), Qt::ElideRight, kLongestName);
  markers->setName(name.toHtmlEscaped());
  for (QXYSeries* part : std::initializer_list<QXYSeries*>{line, markers}) {
    chart.addSeries(part);
    for (QAbstractAxis* axis : chart.axes()) part->attachAxis(axis);
  }
  for (QLegendMarker* marker : chart.legend()->markers(line)) marker->setVisible(false);
}

}  // namespace zendrix::qt
