#include "qt/contrast.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QTest>
#include <memory>

#include "core/app_state.h"
#include "home/frm_new_ui.h"
#include "qt/home/status_band.h"
#include "qt/home/summary_pane.h"
#include "qt/theme.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

TEST(ContrastTest, BlackAndWhiteAreTheEndsOfTheScale) {
  EXPECT_NEAR(Contrast(Qt::black, Qt::white), 21, 0.01);
  EXPECT_NEAR(Contrast(Qt::white, Qt::black), 21, 0.01);
  EXPECT_NEAR(Contrast(Qt::red, Qt::red), 1, 0.01);
  EXPECT_NEAR(Contrast(QColor("#777777"), Qt::white), 4.48, 0.01);
}

TEST(ContrastTest, ColourThatCanBeReadStaysAsItIs) {
  EXPECT_EQ(Legible(QColor("#800000"), Qt::white), QColor("#800000"));
}

TEST(ContrastTest, ColourThatCannotBeReadKeepsItsHueAndIsMovedAsFarAsItTakes) {
  const QColor dark = Legible(QColor("#808000"), QColor("#FFFF40"));
  EXPECT_GE(Contrast(dark, QColor("#FFFF40")), kReadable);
  EXPECT_EQ(dark.red(), dark.green());
  EXPECT_GT(dark.red(), 80);
  const QColor light = Legible(QColor("#303080"), QColor("#101010"));
  EXPECT_GE(Contrast(light, QColor("#101010")), kReadable);
  EXPECT_GT(light.blue(), light.red());
}

// Every pair of text and ground that the theme puts together.
TEST(ThemeTest, EveryTextCanBeReadOnItsGround) {
  Pictures pictures("");
  Theme theme(pictures);
  for (const bool dark : {false, true}) {
    SCOPED_TRACE(dark ? "dark" : "light");
    theme.SetDark(dark);
    const Tokens& t = theme.tokens();
    for (const QColor& ground : {t.window, t.base, t.alternate}) {
      EXPECT_GE(Contrast(t.text, ground), kReadable) << ground.name().toStdString();
      EXPECT_GE(Contrast(t.faint, ground), kReadable) << ground.name().toStdString();
      EXPECT_GE(Contrast(t.link, ground), kReadable) << ground.name().toStdString();
    }
    EXPECT_GE(Contrast(t.on_accent, t.accent), kReadable);
    EXPECT_GE(Contrast(t.on_selection, t.selection), kReadable);
    for (const QColor& ground : {t.strip, t.strip_hover})
      EXPECT_GE(Contrast(t.strip_text, ground), kReadable);
    EXPECT_GE(Contrast(theme.ColourOf(home::kSelectedViewColour), t.strip_selected), kReadable);
  }
}

class StatusBandTest : public ::testing::Test {
 protected:
  testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{""};
  Theme theme_{pictures_};
  store::CMkvlf reader_{world_.state, world_.log};
  home::SummaryPane pane_{{world_.state, world_.log, reader_, [](int) {}, [] {}}};
};

TEST_F(StatusBandTest, SentenceIsClickedWithTheMouse) {
  StatusBand band(pane_, Toolkit{guard_, pictures_, theme_});
  int clicks = 0;
  pane_.OSRiskLevel.clicked.ConnectForever([&] { ++clicks; });
  band.show();
  QTest::mouseClick(band.findChild<QLabel*>(QStringLiteral("OSRiskLevel")), Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
}

TEST_F(StatusBandTest, AdviceHasItsLinkBelowAndTheCountItsLinkBeside) {
  pane_.icStatus.caption = "Some sentence.";
  pane_.icMore.caption = "[Start Agent]";
  pane_.icMore.visible = true;
  pane_.icAlertCount.caption = "Alerts: 4";
  const std::unique_ptr<QWidget> pane(MakeSummaryPane(pane_, Toolkit{guard_, pictures_, theme_}));
  pane->resize(900, 600);
  pane->show();
  QCoreApplication::processEvents();
  const auto place = [&](const char* name) {
    auto* const widget = pane->findChild<QWidget*>(QLatin1String(name));
    return widget ? QRect(widget->mapTo(pane.get(), QPoint()), widget->size()) : QRect();
  };
  EXPECT_GE(place("icMore").top(), place("icStatus").bottom());
  EXPECT_GT(place("icClick").left(), place("icAlertCount").left());
  EXPECT_LT(place("icClick").right(), pane->width() / 2) << "far from what it tells more of";
}

TEST_F(StatusBandTest, SentenceOfEveryLevelCanBeReadFromWhereItBegins) {
  StatusBand band(pane_, Toolkit{guard_, pictures_, theme_});
  band.resize(500, 70);
  band.show();
  auto* const sentence = band.findChild<QLabel*>(QStringLiteral("OSRiskLevel"));
  ASSERT_TRUE(sentence);
  for (const bool dark : {false, true}) {
    theme_.SetDark(dark);
    for (const int level : {1, 2, 3}) {
      pane_.Show({level, 1, 1, "", ""});
      const QColor text(sentence->styleSheet().section(QLatin1String("color: "), -1));
      for (double share = static_cast<double>(sentence->x()) / band.width(); share <= 1; share += 0.05)
        EXPECT_GE(Contrast(text, band.ColourAt(share)), kReadable)
            << "level " << level << (dark ? " dark " : " light ") << share;
    }
  }
}

}  // namespace
}  // namespace zendrix::qt
