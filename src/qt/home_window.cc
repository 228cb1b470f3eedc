#include "qt/home_window.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QSplitter>
#include <QStyle>

#include "qt/bind_browser_view.h"
#include "qt/bind_check_box.h"
#include "qt/bind_image.h"
#include "qt/bind_label.h"
#include "qt/bind_list_view.h"
#include "qt/bind_menu.h"
#include "qt/bind_tray.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

using home::kAdvancedView;
using home::kAlertsView;
using home::kHelpView;
using home::kOptionsView;
using home::kQuitView;
using home::kSummaryView;

namespace {

constexpr int kMargin = 24;
constexpr int kGap = 12;

QWidget* Card(QLayout* layout) {
  auto* card = new QFrame;
  card->setProperty("role", QStringLiteral("card"));
  card->setLayout(layout);
  layout->setContentsMargins(16, 14, 16, 14);
  return card;
}

QLabel* WithRole(QLabel* label, const char* role) {
  label->setProperty("role", QString::fromLatin1(role));
  return label;
}

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

}  // namespace

HomeWindow::HomeWindow(home::frmNewUI& form, const Toolkit& toolkit) : FormWindow(form, toolkit), ui_(form) {
  resize(980, 660);
  setMinimumSize(760, 520);
  auto* central = new QWidget;
  auto* row = new QHBoxLayout(central);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addWidget(MakeStrip());
  auto* content = new QVBoxLayout;
  content->setContentsMargins(kMargin, kMargin - 4, kMargin, kMargin);
  content->setSpacing(kGap);
  content->addWidget(MakeWarning(ui_.lblRootWarning, kit()));
  struct Pane {
    int view;
    widgets::Label& description;
    QWidget* body;
  };
  for (const Pane& pane : {Pane{kSummaryView, ui_.icShortDesc, MakeSummaryPane()},
                           Pane{kAlertsView, ui_.sTitleDesc, MakeAlertsPane()},
                           Pane{kAdvancedView, ui_.aTitleDesc, MakeAdvancedPane()},
                           Pane{kOptionsView, ui_.eTitleDesc, MakeLabel(ui_.etopDesc, kit())},
                           Pane{kHelpView, ui_.htopDesc, MakeHelpPane()}}) {
    QWidget* heading = MakeHeading(pane.view, pane.description);
    const auto at = static_cast<std::size_t>(pane.view);
    auto* frame = new QWidget;
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(pane.body, pane.view == kAlertsView ? 1 : 0);
    if (pane.view != kAlertsView) layout->addStretch(1);
    BindControl(*ui_.fraDesc[at], heading);
    BindControl(*ui_.Frame1[at], frame);
    content->addWidget(heading);
    content->addWidget(frame, 1);
  }
  row->addLayout(content, 1);
  setCentralWidget(central);
  BindTray(ui_.tray, MakeMenu(ui_.mPopupSys2, this, kit()), this, kit());
}

QWidget* HomeWindow::MakeStrip() {
  auto* strip = new QWidget;
  strip->setAttribute(Qt::WA_StyledBackground);
  strip->setFixedWidth(208);
  auto* column = new QVBoxLayout(strip);
  column->setContentsMargins(12, 18, 12, 16);
  column->setSpacing(4);
  auto* head = new QHBoxLayout;
  auto* mark = new QLabel;
  mark->setPixmap(kit().pictures.Pixmap(QStringLiteral("icon"), 36, devicePixelRatioF()));
  auto* name = new QLabel(QStringLiteral("Zendrix"));
  name->setObjectName(QStringLiteral("stripTitle"));
  head->addWidget(mark);
  head->addSpacing(6);
  head->addWidget(name, 1);
  column->addLayout(head);
  column->addSpacing(18);
  for (const int view : {kSummaryView, kAlertsView, kAdvancedView, kOptionsView, kHelpView})
    column->addWidget(MakeNavigationRow(view));
  column->addStretch(1);
  column->addWidget(MakeNavigationRow(kQuitView));
  BindControl(ui_.Frame2, strip, QStringLiteral("Navigation"));
  return strip;
}

QWidget* HomeWindow::MakeNavigationRow(int view) {
  const auto at = static_cast<std::size_t>(view);
  widgets::Label& label = *ui_.ViewItems[at];
  QPushButton* button = MakeButton(label, "nav", kit());
  button->setIcon(kit().pictures.Icon(QStringLiteral("nav/%1").arg(view)));
  button->setIconSize(QSize(20, 20));
  const auto dress = [&label, button, theme = &kit().theme] {
    button->setStyleSheet(QStringLiteral("color: %1; font-weight: %2;")
                              .arg(theme->ColourOf(label.fore_colour).name())
                              .arg(label.emphasised ? 600 : 400));
  };
  Reflect(button, label.fore_colour, [dress](widgets::Colour) { dress(); });
  Reflect(button, label.emphasised, [dress, button](bool current) {
    button->setProperty("current", current);
    dress();
  });
  auto* arrow = new QLabel;
  arrow->setPixmap(kit().pictures.Pixmap(QStringLiteral("nav/arrow"), 12, devicePixelRatioF()));
  BindControl(*ui_.vArrow[at], arrow);
  arrow->setAttribute(Qt::WA_TransparentForMouseEvents);
  auto* row = new QHBoxLayout(button);
  row->addStretch(1);
  row->addWidget(arrow);
  return button;
}

QWidget* HomeWindow::MakeHeading(int view, widgets::Label& description) {
  const auto at = static_cast<std::size_t>(view);
  auto* strip = new QWidget;
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(14);
  auto* words = new QVBoxLayout;
  words->setSpacing(2);
  auto* title = new QLabel(ToQt(ui_.ViewItems[at]->caption.Get()));
  title->setObjectName(QStringLiteral("paneTitle"));
  title->setTextFormat(Qt::PlainText);
  words->addWidget(title);
  words->addWidget(WithRole(MakeLabel(description, kit()), "faint"));
  row->addLayout(words, 1);
  if (ui_.StaImg[at]) row->addWidget(MakeImage(*ui_.StaImg[at], 32, kit()), 0, Qt::AlignTop);
  return strip;
}

QWidget* HomeWindow::MakeAlertsPane() {
  auto* pane = new QWidget;
  auto* column = new QVBoxLayout(pane);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kGap);
  auto* tools = new QHBoxLayout;
  tools->addWidget(MakeCheckBox(ui_.sckShowAll, kit()));
  tools->addStretch(1);
  tools->addWidget(MakeButton(ui_.sShowAll, "flat", kit()));
  tools->addWidget(MakeButton(ui_.sClearAll, "flat", kit()));
  column->addLayout(tools);
  auto* split = new QSplitter(Qt::Vertical);
  split->setChildrenCollapsible(false);
  split->setHandleWidth(kGap);
  split->addWidget(
      new ListTable(ui_.lvAlerts, QStringLiteral("h3"), QStringLiteral("Alerts"),
                    QStringLiteral("No alerts. Zendrix lists here what its Agent finds suspicious."), kit()));
  QWidget* details = MakeBrowserView(ui_.sDesc, QStringLiteral("Details"), kit());
  details->setMinimumHeight(120);
  MakeMenu(ui_.mPopReview, this, kit());
  auto* inner = new QVBoxLayout;
  inner->addWidget(details);
  split->addWidget(Card(inner));
  split->setStretchFactor(0, 2);
  split->setStretchFactor(1, 3);
  column->addWidget(split, 1);
  return pane;
}

QWidget* HomeWindow::MakeAdvancedPane() {
  auto* column = new QVBoxLayout;
  auto* state = new QHBoxLayout;
  column->addWidget(WithRole(MakeLabel(ui_.aAgSta, kit()), "faint"));
  QLabel* status = WithRole(MakeLabel(ui_.aStatus, kit()), "value");
  status->setWordWrap(false);
  state->addWidget(status);
  state->addWidget(MakeButton(ui_.aClick, "link", kit()));
  state->addStretch(1);
  column->addLayout(state);
  QWidget* card = Card(column);
  auto* pane = new QWidget;
  auto* outer = new QVBoxLayout(pane);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->setSpacing(kGap);
  outer->addWidget(card);
  outer->addWidget(WithRole(MakeLabel(ui_.aDesc, kit()), "faint"));
  return pane;
}

QWidget* HomeWindow::MakeHelpPane() {
  auto* column = new QVBoxLayout;
  column->setSpacing(6);
  column->addWidget(MakeLabel(ui_.hAppTitle, kit()));
  column->addWidget(WithRole(MakeLabel(ui_.hVersion, kit()), "faint"));
  column->addSpacing(8);
  column->addWidget(MakeLabel(ui_.hDescription, kit()));
  column->addWidget(WithRole(MakeLabel(ui_.hDisclaimer, kit()), "faint"));
  return Card(column);
}

QWidget* HomeWindow::MakeStatusBand() {
  auto* band = new Band(ui_.OSRiskBackc, kit().theme);
  auto* row = new QHBoxLayout(band);
  row->setContentsMargins(18, 14, 18, 14);
  row->setSpacing(16);
  row->addWidget(MakeImage(ui_.OSFlag, 40, kit()));
  // Clear of the band's saturated end, where no text reads well.
  row->addStretch(1);
  QLabel* sentence = MakeLabel(ui_.OSRiskLevel, kit());
  Theme* theme = &kit().theme;
  // On the saturated left of the band the stated colour reads well; on dark paper the palette's text does.
  const auto dress = [sentence, theme, &label = ui_.OSRiskLevel] {
    const QColor colour = theme->dark() ? QColor(Qt::white) : theme->ColourOf(label.fore_colour);
    sentence->setStyleSheet(QStringLiteral("font-size: 15pt; font-weight: 600; color: ") + colour.name());
  };
  Reflect(sentence, ui_.OSRiskLevel.fore_colour, [dress](widgets::Colour) { dress(); });
  connect(theme, &Theme::Changed, sentence, dress);
  row->addWidget(sentence, 5);
  return band;
}

QWidget* HomeWindow::MakeCountsCard() {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(12);
  grid->setVerticalSpacing(10);
  auto* since = new QHBoxLayout;
  QLabel* caption = WithRole(MakeLabel(ui_.iclblDate, kit()), "faint");
  caption->setWordWrap(false);
  since->addWidget(caption);
  since->addSpacing(6);
  since->addWidget(MakeLabel(ui_.icDate, kit()), 1);
  grid->addLayout(since, 0, 0, 1, 3);
  grid->addWidget(MakeImage(ui_.icImgEventCount, 32, kit()), 1, 0);
  grid->addWidget(WithRole(MakeLabel(ui_.icEventCount, kit()), "value"), 1, 1);
  grid->addWidget(MakeImage(ui_.icImgAlertCount, 32, kit()), 2, 0);
  grid->addWidget(WithRole(MakeLabel(ui_.icAlertCount, kit()), "value"), 2, 1);
  grid->addWidget(MakeButton(ui_.icClick, "link", kit()), 2, 2);
  grid->setColumnStretch(1, 1);
  return Card(grid);
}

QWidget* HomeWindow::MakeSummaryRow(int view) {
  const auto at = static_cast<std::size_t>(view);
  auto* row = new QHBoxLayout;
  row->setSpacing(14);
  row->addWidget(MakeImage(*ui_.Flag[at], 24, kit()), 0, Qt::AlignTop);
  auto* words = new QVBoxLayout;
  words->setSpacing(2);
  auto* name = new QHBoxLayout;
  name->addWidget(MakeButton(*ui_.icView[at], "link", kit()));
  name->addStretch(1);
  words->addLayout(name);
  QLabel* sentence = WithRole(MakeLabel(*ui_.icDesc[at], kit()), "faint");
  sentence->setContentsMargins(5, 0, 0, 0);
  words->addWidget(sentence);
  row->addLayout(words, 1);
  return Card(row);
}

QWidget* HomeWindow::MakeSummaryPane() {
  auto* pane = new QWidget;
  auto* column = new QVBoxLayout(pane);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kGap);
  column->addWidget(MakeStatusBand());
  auto* advice = new QHBoxLayout;
  advice->addWidget(MakeLabel(ui_.icStatus, kit()), 1);
  advice->addWidget(MakeButton(ui_.icMore, "link", kit()));
  column->addLayout(advice);
  column->addWidget(MakeCountsCard());
  column->addWidget(MakeSummaryRow(kAlertsView));
  column->addWidget(MakeSummaryRow(kOptionsView));
  return pane;
}

}  // namespace zendrix::qt
