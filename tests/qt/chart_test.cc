#include <gmock/gmock.h>

#include <QApplication>
#include <QChart>
#include <QLabel>
#include <QLegend>
#include <QLegendMarker>
#include <QLineSeries>
#include <QScatterSeries>
#include <QTest>
#include <QToolTip>
#include <QValueAxis>
#include <set>

#include "admin/frm_chart.h"
#include "admin/grid_frame.h"
#include "qt/bind_chart.h"
#include "qt/chart_looks.h"
#include "qt/contrast.h"
#include "qt/qt_form_host.h"
#include "qt/text_edge.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ChartLooksTest, NoTwoOfThirtySeriesShareDashesAndMarker) {
  std::set<std::pair<int, int>> looks;
  for (int i = 0; i < 30; ++i) {
    const SeriesLook look = LookOfSeries(i, false);
    looks.insert({static_cast<int>(look.dash), static_cast<int>(look.marker)});
  }
  EXPECT_EQ(looks.size(), 30U);
}

class ChartTest : public ::testing::Test {
 protected:
  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  Toolkit kit_{guard_, pictures_, theme_};
};

TEST_F(ChartTest, SeriesStandOutFromTheirGroundInBothPalettes) {
  constexpr double kGraphics = 3;  // what the guidelines ask for of lines and marks
  for (const bool dark : {false, true}) {
    theme_.SetDark(dark);
    for (int i = 0; i < 30; ++i)
      EXPECT_GE(Contrast(LookOfSeries(i, dark).colour, theme_.tokens().base), kGraphics) << i << dark;
  }
}

TEST(ChartAxesTest, ValuesHaveRoundWholeSteps) {
  const auto text = [](const ValueScale& scale) {
    return std::to_string(static_cast<int>(scale.low)) + ".." + std::to_string(static_cast<int>(scale.high)) +
           " by " + std::to_string(static_cast<int>(scale.step)) + ", " + std::to_string(scale.ticks());
  };
  EXPECT_EQ(text(ScaleOf(0, 0, 5)), "0..1 by 1, 2");
  EXPECT_EQ(text(ScaleOf(0, 5, 5)), "0..5 by 1, 6");
  EXPECT_EQ(text(ScaleOf(0, 6, 5)), "0..6 by 2, 4");
  EXPECT_EQ(text(ScaleOf(3, 97, 5)), "0..100 by 20, 6");
  EXPECT_EQ(text(ScaleOf(-3, 4, 5)), "-4..4 by 2, 5");
  EXPECT_EQ(text(ScaleOf(-7, -1, 5)), "-8..0 by 2, 5");
  EXPECT_EQ(text(ScaleOf(0, 2'000'000'000, 2)), "0..2000000000 by 1000000000, 3");
}

TEST(ChartAxesTest, NoScaleHasMoreStepsThanItMay) {
  for (int low = -60; low <= 0; ++low) {
    for (int high = 0; high <= 60; ++high) {
      const ValueScale scale = ScaleOf(low, high, 4);
      EXPECT_LE(scale.ticks(), 5) << low << " " << high;
      EXPECT_LE(scale.low, low);
      EXPECT_GE(scale.high, high);
    }
  }
}

std::vector<int> IndexesOf(const std::vector<PlacedLabel>& labels) {
  std::vector<int> indexes;
  for (const PlacedLabel& label : labels) indexes.push_back(label.index);
  return indexes;
}

TEST(ChartAxesTest, LabelsWithoutRoomAreLeftOutEvenlyFromTheLast) {
  const std::vector<double> widths = {30, 0, 30, 0, 30, 0, 30};
  EXPECT_THAT(IndexesOf(LabelsWithRoom(widths, 0, 600, 700)), ElementsAre(6, 4, 2, 0));
  EXPECT_THAT(IndexesOf(LabelsWithRoom(widths, 0, 90, 200)), ElementsAre(6, 2));
  EXPECT_THAT(IndexesOf(LabelsWithRoom(widths, 0, 20, 200)), ElementsAre(6));
  EXPECT_THAT(LabelsWithRoom({}, 0, 20, 200), IsEmpty());
  EXPECT_THAT(LabelsWithRoom({0, 0}, 0, 20, 200), IsEmpty());
}

TEST(ChartAxesTest, LabelsStandInTheMiddleOfTheirPlacesAndWithinTheRoom) {
  const auto labels = LabelsWithRoom({20, 20, 20}, 5, 205, 210);
  ASSERT_EQ(labels.size(), 3U);
  EXPECT_EQ(labels[0].left, 190) << "moved in from the edge";
  EXPECT_EQ(labels[1].left, 95);
  EXPECT_EQ(labels[2].left, 0);
  EXPECT_EQ(LabelsWithRoom({20}, 0, 200, 200)[0].left, 90);
}

class ChartViewTest : public ChartTest {
 protected:
  ChartView& Show() {
    view_ = std::make_unique<ChartView>(chart_, QStringLiteral("Timeline"), kit_);
    view_->resize(600, 300);
    view_->show();
    QApplication::setActiveWindow(view_.get());
    QTest::qWait(0);  // the chart is laid out by events
    return *view_;
  }
  template <class Series>
  std::vector<Series*> All() const {
    std::vector<Series*> all;
    for (QAbstractSeries* series : view_->chart()->series())
      if (auto* const wanted = dynamic_cast<Series*>(series); wanted && wanted->type() == Series().type())
        all.push_back(wanted);
    return all;
  }
  QValueAxis* Axis(Qt::Orientation orientation) const {
    return dynamic_cast<QValueAxis*>(view_->chart()->axes(orientation).constFirst());
  }
  static std::vector<double> Values(const QXYSeries& series) {
    std::vector<double> values;
    for (const QPointF& point : series.points()) values.push_back(point.y());
    return values;
  }
  const widgets::ChartTable table_ = {{"a", " ", "c"},
                                      {{"System", {1, 0, 12}}, {"<b>Tcp</b> & Port", {0, 3, 0}}}};
  widgets::Chart chart_{"Chrt"};
  std::unique_ptr<ChartView> view_;
};

TEST_F(ChartViewTest, EachSeriesIsALineWithMarkersWhereItIsSomething) {
  chart_.table = table_;
  Show();
  const auto lines = All<QLineSeries>();
  const auto markers = All<QScatterSeries>();
  ASSERT_EQ(lines.size(), 2U);
  ASSERT_EQ(markers.size(), 2U);
  EXPECT_THAT(Values(*lines[0]), ElementsAre(1, 0, 12));
  EXPECT_THAT(Values(*markers[0]), ElementsAre(1, 12));
  EXPECT_THAT(Values(*markers[1]), ElementsAre(3));
  EXPECT_NE(lines[0]->pen().style(), lines[1]->pen().style());
  EXPECT_NE(markers[0]->markerShape(), markers[1]->markerShape());
  EXPECT_EQ(lines[1]->pen().color(), markers[1]->color());
  EXPECT_GT(Axis(Qt::Vertical)->max(), 12);
  EXPECT_LT(Axis(Qt::Horizontal)->min(), 0);
  EXPECT_GT(Axis(Qt::Horizontal)->max(), 2);
}

TEST_F(ChartViewTest, ListOfSeriesNamesEachOnceAndAsPlainText) {
  chart_.legend = true;
  chart_.table = table_;
  Show();
  std::vector<std::string> shown;
  for (QLegendMarker* marker : view_->chart()->legend()->markers())
    if (marker->isVisible()) shown.push_back(marker->label().toStdString());
  EXPECT_THAT(shown, ElementsAre("System", "&lt;b&gt;Tcp&lt;/b&gt; &amp; Port"));
  EXPECT_TRUE(view_->chart()->legend()->isVisible());
}

TEST_F(ChartViewTest, SmallChartHasNoListOfSeries) {
  Show();
  EXPECT_FALSE(view_->chart()->legend()->isVisible());
}

TEST_F(ChartViewTest, NewTableIsDrawnAtOnceButNotOutOfSight) {
  Show();
  chart_.table = table_;
  EXPECT_EQ(All<QLineSeries>().size(), 2U);
  view_->hide();
  chart_.table = widgets::ChartTable{{"a"}, {{"System", {1}}}};
  EXPECT_EQ(All<QLineSeries>().size(), 2U);
  view_->show();
  EXPECT_EQ(All<QLineSeries>().size(), 1U);
  EXPECT_LT(Axis(Qt::Horizontal)->min(), 0) << "one row stands in the middle";
}

TEST_F(ChartViewTest, LowChartHasFewerSteps) {
  chart_.table = table_;
  Show();
  EXPECT_EQ(Axis(Qt::Vertical)->tickCount(), 8);
  view_->resize(600, 100);
  EXPECT_EQ(Axis(Qt::Vertical)->tickCount(), 4);
}

TEST_F(ChartViewTest, EmptyColumnHasNoLine) {
  chart_.table = widgets::ChartTable{{"a", "b"}, {{"System", {std::nullopt, std::nullopt}}}};
  Show();
  EXPECT_THAT(Values(*All<QLineSeries>().at(0)), IsEmpty());
}

TEST_F(ChartViewTest, HundredsOfMonitorsDrawTheFirstOnesAndTellOfAll) {
  widgets::ChartTable table = {{"a", "b"}, {}};
  for (int i = 0; i < 500; ++i) table.series.push_back({"m", {1, 2}});
  chart_.table = table;
  Show();
  EXPECT_EQ(All<QLineSeries>().size(), static_cast<std::size_t>(ChartView::kMostSeries));
  EXPECT_TRUE(view_->accessibleDescription().contains(QStringLiteral("469 more")));
}

TEST_F(ChartViewTest, PaletteChangesWhileItIsOpen) {
  theme_.SetDark(false);
  chart_.table = table_;
  Show();
  const QColor before = All<QLineSeries>().at(0)->color();
  theme_.SetDark(true);
  EXPECT_NE(All<QLineSeries>().at(0)->color(), before);
  EXPECT_EQ(view_->chart()->backgroundBrush().color(), theme_.tokens().base);
  EXPECT_EQ(Axis(Qt::Vertical)->labelsColor(), theme_.tokens().text);
}

TEST_F(ChartViewTest, ScreenReaderHearsNameAndValues) {
  chart_.table = table_;
  Show();
  EXPECT_EQ(view_->accessibleName(), QStringLiteral("Timeline"));
  EXPECT_TRUE(view_->accessibleDescription().startsWith(QStringLiteral("System: now 12, highest 12. ")));
  EXPECT_EQ(view_->objectName(), QStringLiteral("Chrt"));
}

TEST_F(ChartViewTest, ClickAndEnterLeadOnWhereTheChartSaysSo) {
  int clicks = 0;
  chart_.clicked.ConnectForever([&] { ++clicks; });
  const auto press_all = [&] {
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, view_->viewport()->rect().center());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_A})
      QTest::keyClick(view_.get(), key);
  };
  Show();
  press_all();
  EXPECT_EQ(clicks, 0);
  chart_.clickable = true;
  Show();
  press_all();
  EXPECT_EQ(clicks, 4);
}

TEST_F(ChartViewTest, TipIsShown) {
  chart_.tip = "Click to Enlarge";
  Show();
  const QPoint place = view_->viewport()->rect().center();
  QHelpEvent help(QEvent::ToolTip, place, view_->viewport()->mapToGlobal(place));
  QApplication::sendEvent(view_->viewport(), &help);
  EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("Click to Enlarge")));
  QToolTip::hideText();
}

// Pixels of the text colour below the plot: labels, and the title below them.
TEST_F(ChartViewTest, LabelsAndTitleAreDrawnBelowThePlot) {
  chart_.table = table_;
  Show();
  const auto dark_rows = [&] {
    QTest::qWait(0);
    const QImage picture = view_->viewport()->grab().toImage();
    const double ratio = picture.devicePixelRatio();
    int rows = 0;
    for (int y = static_cast<int>((view_->chart()->plotArea().bottom() + 4) * ratio); y < picture.height();
         ++y) {
      bool text = false;
      for (int x = 0; x < picture.width(); ++x)
        text = text || Contrast(picture.pixelColor(x, y), theme_.tokens().base) > kReadable;
      rows += text ? 1 : 0;
    }
    return rows;
  };
  const int labels = dark_rows();
  EXPECT_GT(labels, 4);
  chart_.axis_title = "Time (Minutes)";
  EXPECT_GT(dark_rows(), labels + 4);
}

TEST_F(ChartTest, TimelineViewIsFilledByItsChartAndClosedByEscape) {
  world_.state.settings.MonitorStates = {{"System", "1"}};
  world_.state.settings.NSlots = 3;
  world_.state.settings.TSlots = 2;
  world_.state.settings.TChart = "D";
  QtFormHost host(kit_);
  world_.state.UseHost(host);
  admin::TimeSlots time_slots;
  admin::frmChart form(world_.state, time_slots);
  host.Show(form);
  QWidget* window = nullptr;
  for (QWidget* each : QApplication::topLevelWidgets())
    if (each->objectName() == QLatin1String("frmChart") && each->isVisible()) window = each;
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->windowTitle(), QStringLiteral("Events x Hours"));
  auto* const chart = window->findChild<ChartView*>();
  const QSize before = chart->size();
  EXPECT_TRUE(chart->hasFocus() || !window->isActiveWindow());
  window->resize(window->size() + QSize(100, 50));
  QTest::qWait(0);
  EXPECT_EQ(chart->size(), before + QSize(100, 50));
  QTest::keyClick(chart, Qt::Key_Escape);
  EXPECT_FALSE(form.loaded());
}

}  // namespace
}  // namespace zendrix::qt
