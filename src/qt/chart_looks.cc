#include "qt/chart_looks.h"

#include <array>

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

}  // namespace zendrix::qt
