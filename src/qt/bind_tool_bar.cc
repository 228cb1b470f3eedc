#include "qt/bind_tool_bar.h"

#include <QAction>
#include <QToolBar>

#include "qt/accessible_role.h"
#include "qt/bind_menu.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

QToolBar* MakeBarOfTools(const QString& name, const std::vector<widgets::MenuItem*>& items,
                         const Toolkit& kit) {
  constexpr int kEdge = 20;
  auto* bar = new QToolBar(QStringLiteral("Tools"));
  bar->setObjectName(name);
  bar->setMovable(false);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  bar->setIconSize(QSize(kEdge, kEdge));
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  for (widgets::MenuItem* item : items) {
    QAction* const action = MakeAction(*item, bar, kit);
    Reflect(action, item->picture, [action, &pictures = kit.pictures](const std::string& key) {
      const QString file = key.empty() ? action->objectName() : ToQt(key);
      action->setIcon(pictures.Icon(QStringLiteral("toolbar/") + file));
    });
    if (item->begins_group && !bar->actions().isEmpty())
      TellRole(bar->widgetForAction(bar->addSeparator()), QAccessible::Separator);
    bar->addAction(action);
    bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
  }
  return bar;
}

}  // namespace zendrix::qt
