#include "qt/home/summary_pane.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include "qt/bind_image.h"
#include "qt/bind_label.h"
#include "qt/home/pane_looks.h"

namespace zendrix::qt {

namespace {

// The band behind the status sentence: from the colour of the level at the left to the window's own at the
// right.
class Band : public QFrame {
 public:
  Band(widgets::Observed<std::uint32_t>& colour, Theme& theme) : colour_(colour), theme_(theme) {
    setObjectName(QStringLiteral("OSRiskBackc"));
    Keep(this, colour_.changed.Connect([this] { update(); }));
    connect(&theme_, &Theme::Changed, this, qOverload<>(&QWidget::update));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr qreal kRadius = 8;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient ramp(0, 0, width(), 0);
    // White is the paper that the band runs out to; a dark palette has a dark one.
    const QColor paper = theme_.dark() ? theme_.tokens().base : QColor(Qt::white);
    ramp.setColorAt(0, colour_.Get() == 0 ? paper : QColor(QRgb(colour_.Get())));
    ramp.setColorAt(1, paper);
    painter.setPen(theme_.tokens().border);
    painter.setBrush(ramp);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  }

 private:
  widgets::Observed<std::uint32_t>& colour_;
  Theme& theme_;
};

QWidget* MakeStatusBand(home::SummaryPane& pane, const Toolkit& kit) {
  auto* band = new Band(pane.OSRiskBackc, kit.theme);
  auto* row = new QHBoxLayout(band);
  row->setContentsMargins(18, 14, 18, 14);
  row->setSpacing(16);
  row->addWidget(MakeImage(pane.OSFlag, 40, kit));
  // Clear of the band's saturated end, where no text reads well.
  row->addStretch(1);
  QLabel* sentence = MakeLabel(pane.OSRiskLevel, kit);
  Theme* theme = &kit.theme;
  // On the saturated left of the band the stated colour reads well; on dark paper the palette's text does.
  const auto dress = [sentence, theme, &label = pane.OSRiskLevel] {
    const QColor colour = theme->dark() ? QColor(Qt::white) : theme->ColourOf(label.fore_colour);
    sentence->setStyleSheet(QStringLiteral("font-size: 15pt; font-weight: 600; color: ") + colour.name());
  };
  Reflect(sentence, pane.OSRiskLevel.fore_colour, [dress](widgets::Colour) { dress(); });
  QObject::connect(theme, &Theme::Changed, sentence, dress);
  row->addWidget(sentence, 5);
  return band;
}

QWidget* MakeCountsCard(home::SummaryPane& pane, const Toolkit& kit) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(12);
  grid->setVerticalSpacing(10);
  auto* since = new QHBoxLayout;
  QLabel* caption = WithRole(MakeLabel(pane.iclblDate, kit), "faint");
  caption->setWordWrap(false);
  since->addWidget(caption);
  since->addSpacing(6);
  since->addWidget(MakeLabel(pane.icDate, kit), 1);
  grid->addLayout(since, 0, 0, 1, 3);
  grid->addWidget(MakeImage(pane.icImgEventCount, 32, kit), 1, 0);
  grid->addWidget(WithRole(MakeLabel(pane.icEventCount, kit), "value"), 1, 1);
  grid->addWidget(MakeImage(pane.icImgAlertCount, 32, kit), 2, 0);
  grid->addWidget(WithRole(MakeLabel(pane.icAlertCount, kit), "value"), 2, 1);
  grid->addWidget(MakeButton(pane.icClick, "link", kit), 2, 2);
  grid->setColumnStretch(1, 1);
  return Card(grid);
}

QWidget* MakeSummaryRow(home::StatusRow& part, const Toolkit& kit) {
  auto* row = new QHBoxLayout;
  row->setSpacing(14);
  row->addWidget(MakeImage(part.Flag, 24, kit), 0, Qt::AlignTop);
  auto* words = new QVBoxLayout;
  words->setSpacing(2);
  auto* name = new QHBoxLayout;
  name->addWidget(MakeButton(part.icView, "link", kit));
  name->addStretch(1);
  words->addLayout(name);
  QLabel* sentence = WithRole(MakeLabel(part.icDesc, kit), "faint");
  sentence->setContentsMargins(5, 0, 0, 0);
  words->addWidget(sentence);
  row->addLayout(words, 1);
  return Card(row);
}

}  // namespace

QWidget* MakeSummaryPane(home::SummaryPane& pane, const Toolkit& kit) {
  auto* widget = new QWidget;
  auto* column = new QVBoxLayout(widget);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kPaneGap);
  column->addWidget(MakeStatusBand(pane, kit));
  auto* advice = new QHBoxLayout;
  advice->addWidget(MakeLabel(pane.icStatus, kit), 1);
  advice->addWidget(MakeButton(pane.icMore, "link", kit));
  column->addLayout(advice);
  column->addWidget(MakeCountsCard(pane, kit));
  column->addWidget(MakeSummaryRow(pane.alerts_row, kit));
  column->addWidget(MakeSummaryRow(pane.options_row, kit));
  return widget;
}

}  // namespace zendrix::qt
