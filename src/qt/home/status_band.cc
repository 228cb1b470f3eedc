#include "qt/home/status_band.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>

#include "qt/bind_click.h"
#include "qt/bind_image.h"
#include "qt/bind_label.h"
#include "qt/contrast.h"

namespace zendrix::qt {
namespace {

constexpr qreal kRadius = 8;
// The sentence begins clear of the saturated end, never further left than this share of the width.
constexpr double kSentenceFrom = 0.15;
// A full yellow would outshine everything else on dark paper.
constexpr int kDarkened = 250;  // per cent

}  // namespace

StatusBand::StatusBand(home::SummaryPane& pane, const Toolkit& kit)
    : pane_(pane), theme_(kit.theme), sentence_(MakeLabel(pane.OSRiskLevel, kit)) {
  setObjectName(QStringLiteral("OSRiskBackc"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(18, 14, 18, 14);
  row->setSpacing(16);
  row->addWidget(MakeImage(pane.OSFlag, 40, kit));
  row->addStretch(1);
  row->addWidget(sentence_, 5);
  BindClick(pane.OSRiskLevel.name(), pane.OSRiskLevel.clicked, sentence_, kit);
  Keep(this, pane.OSRiskBackc.changed.Connect([this] {
    DressSentence();
    update();
  }));
  Keep(this, pane.OSRiskLevel.fore_colour.changed.Connect([this] { DressSentence(); }));
  connect(&theme_, &Theme::Changed, this, [this] {
    DressSentence();
    update();
  });
  DressSentence();
}

QColor StatusBand::Paper() const {
  return theme_.dark() ? theme_.tokens().base : QColor(Qt::white);
}

QColor StatusBand::LeftColour() const {
  if (pane_.OSRiskBackc.Get() == 0) return Paper();
  const QColor colour{QRgb(pane_.OSRiskBackc.Get())};
  return theme_.dark() ? colour.darker(kDarkened) : colour;
}

QColor StatusBand::ColourAt(double share) const {
  const QColor left = LeftColour(), right = Paper();
  const auto mix = [share](int from, int to) { return static_cast<int>(from + share * (to - from)); };
  return QColor(mix(left.red(), right.red()), mix(left.green(), right.green()),
                mix(left.blue(), right.blue()));
}

void StatusBand::DressSentence() {
  const QColor told = theme_.dark() ? QColor(Qt::white) : theme_.ColourOf(pane_.OSRiskLevel.fore_colour);
  sentence_->setStyleSheet(QStringLiteral("font-size: 15pt; font-weight: 600; color: ") +
                           Legible(told, ColourAt(kSentenceFrom)).name());
}

void StatusBand::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient ramp(0, 0, width(), 0);
  ramp.setColorAt(0, LeftColour());
  ramp.setColorAt(1, Paper());
  painter.setPen(theme_.tokens().border);
  painter.setBrush(ramp);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}

}  // namespace zendrix::qt
