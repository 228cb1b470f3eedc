#include "qt/theme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPalette>
#include <optional>

#include "qt/style.h"

namespace zendrix::qt {

namespace {

constexpr char kPortal[] = "org.freedesktop.portal.Desktop";
constexpr char kPortalPath[] = "/org/freedesktop/portal/desktop";
constexpr char kPortalSettings[] = "org.freedesktop.portal.Settings";
constexpr char kAppearance[] = "org.freedesktop.appearance";
constexpr char kColorScheme[] = "color-scheme";
constexpr uint kPreferDark = 1;
constexpr int kPortalTimeoutMs = 250;

const Tokens kLight = {"#F4F6FA", "#FFFFFF", "#F5F8FC", "#17222E", "#566778", "#D6DEE8", "#0052A5", "#FFFFFF",
                       "#0052A5", "#0B2340", "#C3D3E8", "#16345A", "#061527", "#CFE3FA", "#10243A"};
const Tokens kDark = {"#141A21", "#1B222B", "#202933", "#E4EBF2", "#9AA9B8", "#303C49", "#1B66BF", "#FFFFFF",
                      "#86B9F2", "#0A1626", "#B9C9DE", "#15294A", "#040A12", "#244B75", "#FFFFFF"};

// The desktop's preference as its portal tells it; nothing when there is no portal or no preference.
std::optional<bool> PortalSaysDark() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return std::nullopt;
  QDBusMessage call =
      QDBusMessage::createMethodCall(kPortal, kPortalPath, kPortalSettings, QStringLiteral("Read"));
  call << QString::fromLatin1(kAppearance) << QString::fromLatin1(kColorScheme);
  const QDBusMessage reply = bus.call(call, QDBus::Block, kPortalTimeoutMs);
  if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return std::nullopt;
  QVariant value = reply.arguments().constFirst();
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  const uint scheme = value.toUInt();
  if (scheme == 0) return std::nullopt;
  return scheme == kPreferDark;
}

QString StyleSheet(const Tokens& t) {
  QString sheet = QStringLiteral(R"(
QToolTip { color: @text; background: @base; border: 1px solid @border; padding: 4px 6px; }
QLabel#paneTitle { font-size: 20pt; font-weight: 600; }
QLabel[role="faint"] { color: @faint; }
QLabel[role="value"] { font-size: 12pt; }
QLabel[role="heading"] { font-size: 13pt; font-weight: 600; }
QLabel[role="warning"] { color: #3D2A00; background: #FFF0C2; border: 1px solid #B7791F; border-radius: 6px;
  padding: 8px 12px; font-weight: 600; }
QLabel[role="warning"]:focus { border: 2px solid #0052A5; }
QLabel#hAppTitle { font-size: 15pt; font-weight: 600; }
QWidget#Frame2 { background: @strip; }
QWidget#Frame2 QLabel { color: @striptext; }
QLabel#stripTitle { font-size: 13pt; font-weight: 600; color: white; }
QPushButton[role="nav"] { border: 1px solid transparent; border-radius: 6px; background: transparent;
  text-align: left; padding: 9px 10px; font-size: 11pt; }
QPushButton[role="nav"]:hover { background: @striphover; }
QPushButton[role="nav"][current="true"] { background: @stripselected; }
QPushButton[role="nav"]:focus { border: 1px solid #6E8ADD; }
QPushButton[role="link"] { border: 1px solid transparent; border-radius: 4px; background: transparent; color: @link;
  padding: 2px 4px; text-align: left; }
QPushButton[role="link"]:hover { text-decoration: underline; }
QPushButton[role="link"]:focus { border: 1px solid @link; }
QPushButton[role="striplink"] { border: 1px solid transparent; border-radius: 4px; background: transparent;
  color: @striptext; padding: 3px 10px; text-align: left; }
QPushButton[role="striplink"]:hover { text-decoration: underline; }
QPushButton[role="striplink"]:focus { border: 1px solid #6E8ADD; }
QPushButton[role="flat"] { border: 1px solid @border; border-radius: 6px; background: @base; color: @text;
  padding: 6px 14px; }
QPushButton[role="flat"]:hover { border-color: @accent; }
QPushButton[role="flat"]:focus { border-color: @link; }
QPushButton[role="flat"]:pressed { background: @alternate; border: 1px solid @text; }
QPushButton[role="flat"]:disabled { color: @faint; }
QPushButton[role="primary"] { border: 1px solid @accent; border-radius: 6px; background: @accent; color: @onaccent;
  padding: 6px 14px; }
QPushButton[role="primary"]:focus { border-color: @text; }
QPushButton[role="primary"]:disabled { border-color: @border; background: @window; color: @faint; }
QFrame[role="card"] { background: @base; border: 1px solid @border; border-radius: 8px; }
QLineEdit { background: @base; color: @text; border: 1px solid @faint; border-radius: 6px; padding: 6px 8px;
  selection-background-color: @accent; selection-color: @onaccent; }
QLineEdit:focus { border: 1px solid @link; }
QLineEdit:disabled { background: @window; color: @faint; border-color: @border; }
QTabBar { outline: 0; }
QTabBar::tab { background: transparent; color: @faint; border: 1px solid transparent; border-bottom: 2px solid @border;
  padding: 7px 16px; }
QTabBar::tab:hover { color: @text; }
QTabBar::tab:selected { color: @text; border-bottom: 2px solid @link; }
QTabBar::tab:selected:focus { border: 1px solid @link; border-bottom: 2px solid @link; }
QSlider:horizontal { min-height: 24px; }
QSlider::groove:horizontal { height: 4px; background: @border; border-radius: 2px; }
QSlider::sub-page:horizontal { background: @accent; border-radius: 2px; }
QSlider::handle:horizontal { width: 16px; height: 16px; margin: -8px 0; border: 2px solid @accent; border-radius: 10px;
  background: @base; }
QSlider::handle:horizontal:focus { border-color: @link; background: @selection; }
QTableView { background: @base; alternate-background-color: @alternate; color: @text; border: 1px solid @border;
  border-radius: 6px; gridline-color: transparent; selection-background-color: @selection;
  selection-color: @onselection; outline: 0; }
QTableView:focus { border: 1px solid @link; }
QTableView::item { padding: 0 6px; border: 0; }
QTableView::item:selected { background: @selection; color: @onselection; }
QListView[role="checks"] { background: @base; color: @text; border: 1px solid @border; border-radius: 6px;
  padding: 4px; outline: 0; }
QListView[role="checks"]:focus { border: 1px solid @link; }
QListView[role="checks"]::item { padding: 3px 4px; }
QListView[role="checks"]::item:selected { background: @selection; color: @onselection; }
QGraphicsView { background: @base; border: 1px solid @border; border-radius: 6px; }
QGraphicsView:focus { border: 1px solid @link; }
QTreeView { background: @base; color: @text; border: 1px solid @border; border-radius: 6px; padding: 2px; }
QTreeView:focus { border: 1px solid @link; }
QTreeView::item { padding: 3px 2px; border: 0; }
QTreeView::item:selected { background: @selection; color: @onselection; }
QHeaderView { background: @base; border: 0; border-top-left-radius: 6px; border-top-right-radius: 6px; }
QHeaderView::section { background: @base; color: @faint; border: 0; border-bottom: 1px solid @border;
  border-right: 1px solid @border; padding: 7px 6px; }
QHeaderView::section:last { border-right: 0; }
QScrollBar { background: transparent; border: 0; margin: 0; }
QScrollBar:vertical { width: 12px; }
QScrollBar:horizontal { height: 12px; }
QScrollBar::handle { background: @faint; border: 3px solid @base; border-radius: 6px; }
QScrollBar::handle:focus { background: @link; }
QScrollBar::handle:disabled { background: @border; }
QScrollBar::handle:vertical { min-height: 32px; }
QScrollBar::handle:horizontal { min-width: 32px; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: @base; }
QDialog QPushButton { min-width: 84px; padding: 6px 12px; border: 1px solid @border; border-radius: 6px;
  background: @base; color: @text; }
QDialog QPushButton:default { background: @accent; border-color: @accent; color: @onaccent; }
QDialog QPushButton:focus { border-color: @link; }
QMessageBox { padding: 8px; }
QMessageBox QLabel { padding: 4px 8px; }
QStatusBar { background: @window; color: @faint; border-top: 1px solid @border; }
QStatusBar::item { border: 0; }
QProgressBar { border: 1px solid @border; border-radius: 4px; background: @base; max-height: 8px; }
QProgressBar::chunk { background: @accent; border-radius: 3px; }
QToolBar { background: @window; border: 0; border-bottom: 1px solid @border; padding: 4px 8px; spacing: 4px; }
QMenuBar { background: @window; }
QWidget#splash { background: #0B2340; }
QWidget#splash QLabel { color: #C3D3E8; }
QWidget#splash QLabel#lblProductName { color: white; font-size: 19pt; font-weight: 600; }
QWidget#splash QProgressBar { background: #16345A; border: 0; }
QWidget#splash QProgressBar::chunk { background: #6E8ADD; }
QLabel[role="empty"] { color: @faint; font-size: 11pt; background: transparent; }
)");
  const std::pair<const char*, QColor> names[] = {{"@onselection", t.on_selection},
                                                  {"@selection", t.selection},
                                                  {"@striptext", t.strip_text},
                                                  {"@striphover", t.strip_hover},
                                                  {"@stripselected", t.strip_selected},
                                                  {"@strip", t.strip},
                                                  {"@window", t.window},
                                                  {"@base", t.base},
                                                  {"@alternate", t.alternate},
                                                  {"@text", t.text},
                                                  {"@faint", t.faint},
                                                  {"@border", t.border},
                                                  {"@onaccent", t.on_accent},
                                                  {"@accent", t.accent},
                                                  {"@link", t.link}};
  for (const auto& [name, colour] : names) sheet.replace(QLatin1String(name), colour.name());
  return sheet;
}

QPalette PaletteOf(const Tokens& t) {
  QPalette palette;
  palette.setColor(QPalette::Window, t.window);
  palette.setColor(QPalette::WindowText, t.text);
  palette.setColor(QPalette::Base, t.base);
  palette.setColor(QPalette::AlternateBase, t.alternate);
  palette.setColor(QPalette::Text, t.text);
  palette.setColor(QPalette::Button, t.base);
  palette.setColor(QPalette::ButtonText, t.text);
  palette.setColor(QPalette::BrightText, t.on_accent);
  palette.setColor(QPalette::Highlight, t.accent);
  palette.setColor(QPalette::HighlightedText, t.on_accent);
  palette.setColor(QPalette::Link, t.link);
  palette.setColor(QPalette::ToolTipBase, t.base);
  palette.setColor(QPalette::ToolTipText, t.text);
  palette.setColor(QPalette::PlaceholderText, t.faint);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, t.faint);
  return palette;
}

}  // namespace

Theme::Theme(Pictures& pictures) {
  constexpr int kHalf = 128;
  const bool palette_is_dark = QApplication::palette().color(QPalette::Window).lightness() < kHalf;
  dark_ = PortalSaysDark().value_or(palette_is_dark);
  QDBusConnection::sessionBus().connect(kPortal, kPortalPath, kPortalSettings,
                                        QStringLiteral("SettingChanged"), this,
                                        SLOT(OnSettingChanged(QString, QString, QDBusVariant)));
  QApplication::setStyle(new Style(pictures));
  Apply();
}

Theme::~Theme() {
  qApp->setStyleSheet({});
  QApplication::setStyle(QStringLiteral("Fusion"));
}

const Tokens& Theme::tokens() const {
  return dark_ ? kDark : kLight;
}

void Theme::SetDark(bool dark) {
  if (dark == dark_) return;
  dark_ = dark;
  Apply();
}

void Theme::Apply() {
  QApplication::setPalette(PaletteOf(tokens()));
  qApp->setStyleSheet(StyleSheet(tokens()));
  emit Changed();
}

void Theme::OnSettingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group == QLatin1String(kAppearance) && key == QLatin1String(kColorScheme))
    SetDark(value.variant().toUInt() == kPreferDark);
}

QColor Theme::ColourOf(widgets::Colour colour) const {
  if (colour == widgets::kSystemHighlight) return tokens().strip_text;
  if (colour == widgets::kSystemButtonText) return tokens().text;
  if (colour == widgets::kSystemButtonFace) return tokens().base;
  constexpr widgets::Colour kByte = 0xFF;
  return QColor(static_cast<int>(colour & kByte), static_cast<int>((colour >> 8) & kByte),
                static_cast<int>((colour >> 16) & kByte));
}

widgets::Colour Theme::NumberOf(const QColor& colour) {
  return static_cast<widgets::Colour>(colour.red() | colour.green() << 8 | colour.blue() << 16);
}

}  // namespace zendrix::qt
