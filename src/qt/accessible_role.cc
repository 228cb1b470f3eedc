#include "qt/accessible_role.h"

#include <QAccessibleWidget>
#include <QVariant>

namespace zendrix::qt {
namespace {

constexpr char kRole[] = "accessibleRole";

// Asked with the name of each class that the object is of; what it was told holds for all of them.
QAccessibleInterface* MakeInterfaceInRole(const QString&, QObject* object) {
  auto* const widget = qobject_cast<QWidget*>(object);
  const QVariant role = widget ? widget->property(kRole) : QVariant();
  if (!role.isValid()) return nullptr;
  return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
}

}  // namespace

void TellRole(QWidget* widget, QAccessible::Role role) {
  widget->setProperty(kRole, static_cast<int>(role));
  QAccessible::installFactory(MakeInterfaceInRole);  // the toolkit takes it once
}

}  // namespace zendrix::qt
