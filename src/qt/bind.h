// The two directions of a binding. Reflect: a logical value shows in a widget, now and after each change.
// OnAct: an act of the user reaches the logic, and nothing it throws reaches the toolkit. Both end with the
// widget.
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

}  // namespace zendrix::qt
