#include "qt/bind_date_time_box.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QKeyEvent>
#include <utility>

#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

// Moments are what the clock on the wall shows, whatever the zone: to the toolkit they are of a zone without
// a summer time.
QDateTime OfMoment(widgets::DateTimeBox::Moment moment) {
  return QDateTime::fromSecsSinceEpoch(moment, Qt::UTC);
}

class MomentEdit : public QDateTimeEdit {
 public:
  MomentEdit(widgets::DateTimeBox& box, const QString& accessible_name, const Toolkit& kit)
      : box_(box), kit_(kit) {
    setTimeSpec(Qt::UTC);
    setAccessibleName(accessible_name);
    setMinimumHeight(kFieldHeight);
    setCalendarPopup(true);
    // What stands there without a moment.
    setSpecialValueText(QStringLiteral(" "));
    Reflect(this, box.picture,
            [this](const std::string& picture) { setDisplayFormat(DateTimePicture(picture)); });
    Reflect(this, box.moment, [this](const auto& moment) { Show(moment); });
    connect(this, &QDateTimeEdit::dateTimeChanged, this, [this](const QDateTime& picked) {
      if (!applying_) kit_.guard(box_.name(), [&] { box_.Pick(picked.toSecsSinceEpoch()); });
    });
  }

 protected:
  // A moment can be typed as it is shown. The toolkit goes on to the next part behind a part's last digit,
  // and once more behind the separator that follows in the text; and of the day's halves it wants both
  // letters.
  void keyPressEvent(QKeyEvent* event) override {
    const QString text = event->text();
    const bool typed = text.size() == 1 && text.front().isPrint() &&
                       !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    // The separator may be struck with the help of these.
    if (event->key() == Qt::Key_Shift || event->key() == Qt::Key_AltGr)
      return QDateTimeEdit::keyPressEvent(event);
    const bool went_on = std::exchange(went_on_, false);
    if (typed && went_on && !text.front().isLetterOrNumber()) return;
    if (typed && currentSection() == AmPmSection) return ChooseHalf(text.front());
    const Section before = currentSection();
    QDateTimeEdit::keyPressEvent(event);
    went_on_ = typed && text.front().isDigit() && currentSection() != before;
  }

 private:
  void ChooseHalf(QChar letter) {
    constexpr int kHalfHours = 12;
    const auto begins = [&](const QString& half) { return half.startsWith(letter, Qt::CaseInsensitive); };
    const bool afternoon = time().hour() >= kHalfHours;
    if (begins(afternoon ? locale().amText() : locale().pmText()))
      setTime(time().addSecs(kHalfHours * 60 * 60));
    setSelectedSection(AmPmSection);
  }

  void Show(const std::optional<widgets::DateTimeBox::Moment>& moment) {
    applying_ = true;
    const QDateTime shown = moment ? OfMoment(*moment) : minimumDateTime();
    // What is being typed stays as it is: putting its own moment back would begin the section anew.
    if (dateTime() != shown) setDateTime(shown);
    setEnabled(moment.has_value());
    applying_ = false;
  }

  widgets::DateTimeBox& box_;
  Toolkit kit_;
  bool applying_ = false;
  bool went_on_ = false;  // to the next part, behind the last key
};

}  // namespace

DateTimeField MakeDateTimeBox(widgets::DateTimeBox& box, const QString& label, QChar access_key,
                              const Toolkit& kit) {
  auto* given = new QCheckBox(WithAccessKey(label, access_key));
  BindControl(box, given, label);
  Reflect(given, box.moment, [given](const auto& moment) { given->setChecked(moment.has_value()); });
  QObject::connect(given, &QCheckBox::toggled, given, [&box, guard = &kit.guard](bool checked) {
    (*guard)(box.name(), [&] { checked ? box.Begin() : box.Empty(); });
  });
  return {given, new MomentEdit(box, label + QStringLiteral(" date and time"), kit)};
}

QString DateTimePicture(std::string_view picture) {
  const bool halves = picture.find('t') != std::string_view::npos;
  QString made;
  bool quoted = false;
  for (std::size_t i = 0; i < picture.size();) {
    const char letter = picture[i];
    const std::size_t end = std::min(picture.find_first_not_of(letter, i), picture.size());
    auto count = static_cast<int>(end - i);
    i = end;
    if (letter == '\'' && count % 2 == 1) quoted = !quoted;
    if (quoted || letter == '\'') {
      made += QString(count, QLatin1Char(letter));
      continue;
    }
    switch (letter) {
      case 'y':
        made += count <= 2 ? QStringLiteral("yy") : QStringLiteral("yyyy");
        break;
      case 't':
        made += QStringLiteral("AP");
        break;
      case 'h':
      case 'H':
        made += QString(std::min(count, 2), letter == 'h' && halves ? QLatin1Char('h') : QLatin1Char('H'));
        break;
      default:
        made += ToQt(std::string(static_cast<std::size_t>(count), letter));
    }
  }
  return made;
}

}  // namespace zendrix::qt
