#include "qt/bind_check_list.h"

#include <QListView>

#include "qt/check_list_model.h"

namespace zendrix::qt {
namespace {

// The keyboard that comes to the list finds an entry to begin with.
class CheckListView : public QListView {
 protected:
  void focusInEvent(QFocusEvent* event) override {
    if (!currentIndex().isValid()) setCurrentIndex(model()->index(0, 0));
    QListView::focusInEvent(event);
  }
};

}  // namespace

QListView* MakeCheckList(widgets::CheckList& list, const QString& accessible_name, const Toolkit& kit) {
  auto* view = new CheckListView;
  BindControl(list, view, accessible_name);
  view->setProperty("role", QStringLiteral("checks"));
  view->setModel(new CheckListModel(list, kit, view));
  view->setEditTriggers(QAbstractItemView::NoEditTriggers);
  view->setUniformItemSizes(true);
  return view;
}

}  // namespace zendrix::qt
