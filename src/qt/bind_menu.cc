#include "qt/bind_menu.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QKeySequence>
#include <QMenu>
#include <QTimer>

#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

QPoint MenuPlace() {
  const QWidget* const focus = QApplication::focusWidget();
  const QVariant place = focus ? focus->property(kMenuPlace) : QVariant();
  return place.isValid() ? place.toPoint() : QCursor::pos();
}

}  // namespace

QAction* MakeAction(widgets::MenuItem& item, QObject* owner, const Toolkit& kit) {
  auto* action = new QAction(owner);
  action->setObjectName(ToQt(item.name()));
  Reflect(action, item.caption, [action](const std::string& text) { action->setText(ToQt(text)); });
  Reflect(action, item.visible, [action](bool shown) { action->setVisible(shown); });
  Reflect(action, item.enabled, [action](bool usable) { action->setEnabled(usable); });
  action->setCheckable(item.checkable);
  action->setShortcut(QKeySequence(ToQt(item.shortcut)));
  Reflect(action, item.checked, [action](bool marked) { action->setChecked(marked); });
  // Deferred to the event loop: a command may open a modal window, and the menu must be closed by then.
  QObject::connect(action, &QAction::triggered, action, [&item, action, guard = &kit.guard] {
    action->setChecked(item.checked);
    QTimer::singleShot(0, action, [&item, guard] { (*guard)(item.name(), [&] { item.clicked.Raise(); }); });
  });
  return action;
}

QMenu* MakeMenu(widgets::Menu& menu, QWidget* owner, const Toolkit& kit) {
  auto* widget = new QMenu(owner);
  widget->setObjectName(ToQt(menu.name()));
  Reflect(widget, menu.caption, [widget](const std::string& text) { widget->setTitle(ToQt(text)); });
  for (widgets::MenuItem* item : menu.items) {
    if (item->begins_group) widget->addSeparator();
    widget->addAction(MakeAction(*item, widget, kit));
  }
  Keep(widget, menu.popup.Connect([widget] { widget->popup(MenuPlace()); }));
  return widget;
}

}  // namespace zendrix::qt
