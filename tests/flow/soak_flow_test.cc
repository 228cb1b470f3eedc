// Half an hour of a busy computer in front of a restless user: ten new lines a second, the file replaced
// every five minutes, and clicks wherever something can be clicked. Nothing may pile up.
#include <algorithm>
#include <random>

#include "flow_fixture.h"
#include "support/held_bytes.h"

namespace zendrix::flow {
namespace {

class SoakFlowTest : public FlowTest {
 protected:
  std::string NextLine() {
    const int second = line_ / 10, kind = line_ % 50;
    const std::string name = "C:\\Programs\\tool" + std::to_string(random_() % 40) +
                             ".exe:" + std::to_string(1000 + random_() % 9000);
    ++line_;
    if (kind == 30) return Line(second, "Running Processes", name);
    if (kind == 31)
      return Line(second, "Aggregation", "Running Processes=" + name + ";", line_ % 3 ? "0.92" : "0.99", "",
                  "AG,5," + std::to_string(line_));
    if (kind == 32) return Line(second, "Community", "observed", "0", "Running Processes=failed");
    return Line(second, "System", "figure " + std::to_string(random_() % 500), "0");
  }

  void Act() {
    home::frmNewUI& ui = Home();
    static constexpr int kPanes[] = {home::kAlertsView, home::kAdvancedView, home::kOptionsView,
                                     home::kHelpView, home::kSummaryView};
    switch (random_() % 10) {
      case 0:
      case 1:
        return ui.ViewItems_Click(kPanes[random_() % std::size(kPanes)]);
      case 2:
      case 3:
      case 4:
        if (ui.alerts.lvAlerts.size() == 0) return;
        return ui.alerts.lvAlerts.Click(
            static_cast<widgets::ListView::Slot>(random_() % ui.alerts.lvAlerts.size()));
      case 5:
        return ui.alerts.sShowAll.clicked.Raise();
      case 6:
        return ui.alerts.sClearAll.clicked.Raise();
      case 7:
        ui.Unload(widgets::UnloadCause::kCloseBox);
        return;
      case 8:
        return ui.Tray_Mouse(widgets::kTrayLeftDouble);
      default:
        return ClickLink("about:showhide");
    }
  }

  std::mt19937 random_{20261122};
  int line_ = 0;
};

TEST_F(SoakFlowTest, NothingPilesUpInHalfAnHour) {
  constexpr int kMinutes = 30, kReplacedEvery = 5;
  Write(NextLine());
  Start();
  // Just before each replacement, when the file is largest.
  std::vector<std::size_t> held;
  std::size_t most_listed = 0, pages_written = 0;
  for (int second = 1; second <= kMinutes * 60; ++second) {
    std::string lines;
    for (int i = 0; i < 10; ++i) lines += NextLine();
    Append(lines);
    if (second % 3 == 0) Act();
    Seconds(1);
    // What the twins write down is theirs.
    most_listed = std::max(most_listed, Home().alerts.lvAlerts.size());
    pages_written += static_cast<std::size_t>(
        std::count_if(page_->events.begin(), page_->events.end(),
                      [](const std::string& event) { return event.starts_with("body "); }));
    page_->events.clear();
    page_->events.shrink_to_fit();
    world_.host.shown.clear();
    world_.quiet.Take();
    if (second % (kReplacedEvery * 60) != 0) continue;
    held.push_back(test::HeldBytes());
    Write(NextLine());
  }
  EXPECT_TRUE(Boxes().shown.empty());
  EXPECT_FALSE(Home().ListBusy);
  // It was no quiet half hour.
  EXPECT_GT(most_listed, 20U);
  EXPECT_GT(pages_written, 50U);
  // The first round fills what is kept for good; from then on each is like the others.
  const auto [low, high] = std::minmax_element(held.begin() + 1, held.end());
  EXPECT_LT(static_cast<double>(*high), static_cast<double>(*low) * 1.15) << *low << " to " << *high;
}

}  // namespace
}  // namespace zendrix::flow
