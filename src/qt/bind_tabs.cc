#include "qt/bind_tabs.h"

#include <QTabBar>

#include "qt/text_edge.h"

namespace zendrix::qt {

QTabBar* MakeTabs(const std::vector<widgets::Label*>& labels, const QString& accessible_name,
                  const Toolkit& kit) {
  auto* bar = new QTabBar;
  bar->setAccessibleName(accessible_name);
  bar->setDrawBase(false);
  bar->setExpanding(false);
  // A click leaves the field that has the keyboard, as a click on any other control does.
  bar->setFocusPolicy(Qt::StrongFocus);
  for (widgets::Label* label : labels) {
    const int tab = bar->addTab(QString());
    bar->setTabData(tab, ToQt(label->name()));
    Reflect(bar, label->caption, [bar, tab](const std::string& text) {
      bar->setTabText(tab, WithoutAccessKeys(ToQt(text)));
      bar->setAccessibleTabName(tab, ToQt(text));
    });
    Reflect(bar, label->tip,
            [bar, tab](const std::string& tip) { bar->setTabToolTip(tab, ToolTipText(tip)); });
    Reflect(bar, label->bordered, [bar, tab](bool current) {
      if (current) bar->setCurrentIndex(tab);
    });
  }
  QObject::connect(bar, &QTabBar::currentChanged, bar, [bar, labels, guard = &kit.guard](int tab) {
    widgets::Label& label = *labels[static_cast<std::size_t>(tab)];
    // Told by the logic, it has its border already.
    if (label.bordered) return;
    (*guard)(label.name(), [&] { label.clicked.Raise(); });
    // The logic may stay where it was.
    for (std::size_t i = 0; i < labels.size(); ++i)
      if (labels[i]->bordered) bar->setCurrentIndex(static_cast<int>(i));
  });
  return bar;
}

}  // namespace zendrix::qt
