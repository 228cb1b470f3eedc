// The look of the program: one style, a light and a dark palette, following the desktop while the program
// runs.
#pragma once

#include <QColor>
#include <QObject>
#include <QString>

#include "qt/pictures.h"
#include "widgets/control.h"

class QDBusVariant;

namespace zendrix::qt {

struct Tokens {
  QColor window, base, alternate, text, faint, border, accent, on_accent, link, strip, strip_text,
      strip_hover, strip_selected, selection, on_selection;
};

class Theme : public QObject {
  Q_OBJECT
 public:
  // Reads what the desktop prefers and dresses the application; from then on follows the desktop.
  explicit Theme(Pictures& pictures);
  // Undresses it: the style draws with the pictures.
  ~Theme() override;
  Theme(const Theme&) = delete;
  Theme& operator=(const Theme&) = delete;
  bool dark() const { return dark_; }
  const Tokens& tokens() const;
  void SetDark(bool dark);
  // A colour of the logic: a number, or a colour of the desktop.
  QColor ColourOf(widgets::Colour colour) const;
  // The number of a colour.
  static widgets::Colour NumberOf(const QColor& colour);

 signals:
  void Changed();

 private slots:
  void OnSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void Apply();
  bool dark_ = false;
};

}  // namespace zendrix::qt
