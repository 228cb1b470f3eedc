// What binders share. Reflect shows a logical value in a widget, now and after each change; Keep ties a
// connection to a widget's lifetime. In the other direction an act of the user calls the logic through the
// toolkit's guard, so that no exception reaches Qt.
#pragma once

#include <QObject>
#include <utility>
#include <vector>

#include "qt/pictures.h"
#include "qt/slot_guard.h"
#include "qt/theme.h"
#include "widgets/observed.h"

class QWidget;

namespace zendrix::widgets {
class Control;
}

namespace zendrix::qt {

// What every binder and window needs.
struct Toolkit {
  SlotGuard& guard;
  Pictures& pictures;
  Theme& theme;
};

inline constexpr int kTwipsPerPixel = 15;

// Holds connections for as long as a widget lives.
class Links : public QObject {
 public:
  explicit Links(QObject* parent) : QObject(parent) {}
  std::vector<widgets::Connection> kept;
};

inline void Keep(QObject* owner, widgets::Connection connection) {
  Links* links = nullptr;
  for (QObject* child : owner->children())
    if ((links = dynamic_cast<Links*>(child))) break;
  if (!links) links = new Links(owner);
  links->kept.push_back(std::move(connection));
}

template <class T, class Apply>
void Reflect(QObject* owner, widgets::Observed<T>& value, Apply apply) {
  apply(value.Get());
  Keep(owner, value.changed.Connect([&value, apply] { apply(value.Get()); }));
}

// Name, tip, visibility and use of any control.
void BindControl(widgets::Control& control, QWidget* widget, const QString& accessible_name = {});
// The same but for its use, which the caller sees to.
void BindControlButUse(widgets::Control& control, QWidget* widget, const QString& accessible_name = {});

}  // namespace zendrix::qt
