// How the series of a chart are told apart: by a dash pattern and a marker, of which no two of the first
// thirty have the same pair, and by a colour that stands out from the ground of its palette.
#pragma once

#include <QColor>
#include <QScatterSeries>

namespace zendrix::qt {

struct SeriesLook {
  QColor colour;
  Qt::PenStyle dash;
  QScatterSeries::MarkerShape marker;
};

SeriesLook LookOfSeries(int index, bool dark);

}  // namespace zendrix::qt
