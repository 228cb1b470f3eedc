// How the series of a chart are told apart: by a dash pattern and a marker, of which no two of the first
// thirty have the same pair, and by a colour that stands out from the ground of its palette.
#pragma once

#include <QColor>
#include <QFontMetrics>
#include <QScatterSeries>

#include "widgets/chart.h"

class QChart;

namespace zendrix::qt {

struct SeriesLook {
  QColor colour;
  Qt::PenStyle dash;
  QScatterSeries::MarkerShape marker;
};

SeriesLook LookOfSeries(int index, bool dark);

// Draws a series along the chart's axes, on a ground of this colour: a line, and markers with the series'
// name, cut to a bearable length. Where it stands at 0, with most of the others, it has no marker.
void AddSeries(QChart& chart, const widgets::ChartSeries& series, const SeriesLook& look,
               const QColor& ground, const QFontMetrics& metrics);

}  // namespace zendrix::qt
