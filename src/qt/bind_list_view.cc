#include "qt/bind_list_view.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

#include "qt/bind_menu.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

ListTable::ListTable(widgets::ListView& list, const QString& picture_list, const QString& accessible_name,
                     const QString& empty_text, const Toolkit& kit)
    : TableView(empty_text),
      list_(list),
      kit_(kit),
      model_(new ListModel(list, kit.pictures, picture_list, this)) {
  BindControl(list, this, accessible_name);
  setModel(model_);
  setIconSize(QSize(16, 16));
  horizontalHeader()->setStretchLastSection(true);
  connect(model_, &QAbstractItemModel::modelReset, this, [this] { SizeColumns(); });
  // The first rows show what the columns have to hold.
  connect(model_, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex&, int first, int last) {
    if (last - first + 1 == model_->rowCount()) SizeColumns();
  });
  connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) {
            if (!applying_ && current.isValid()) TellClick(current);
          });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this] { list_.SetScrolledRows(static_cast<std::size_t>(std::max(0, rowAt(0)))); });
  Keep(this, list_.selection_changed.Connect([this] { ShowSelection(); }));
  Keep(this, list_.rows_added.Connect([this] { ShowSelection(); }));
  Keep(this, list_.reveal.Connect(
                 [this](widgets::ListView::Slot slot) { scrollTo(model_->index(model_->RowOf(slot), 0)); }));
  const auto tell_why_empty = [this, empty_text] {
    SetEmptyText(list_.empty_text.Get().empty() ? empty_text : ToQt(list_.empty_text.Get()));
  };
  Keep(this, list_.empty_text.changed.Connect(tell_why_empty));
  tell_why_empty();
  ShowSelection();
}

void ListTable::ShowSelection() {
  if (applying_) return;
  applying_ = true;
  const int row = list_.selected() ? model_->RowOf(*list_.selected()) : -1;
  if (row < 0) {
    clearSelection();
    setCurrentIndex({});
  } else if (row != currentIndex().row()) {
    setCurrentIndex(model_->index(row, 0));
  }
  applying_ = false;
}

void ListTable::SizeColumns() {
  // The program's narrow columns leave no room for a word beside its picture, or for a date in a large font.
  // None is made narrower than its contents, up to a share of the list: an event's text may be of any length.
  constexpr int kRoomForAWord = 96;
  constexpr int kLargestShare = 3;
  const auto& columns = list_.columns.Get();
  const int width = viewport()->width();
  for (int i = 0; i + 1 < static_cast<int>(columns.size()); ++i) {
    const widgets::ListColumn& column = columns[static_cast<std::size_t>(i)];
    const int wanted =
        column.share > 0 ? static_cast<int>(width * column.share) : column.twips / kTwipsPerPixel;
    const int contents = column.share > 0 ? 0 : std::min(sizeHintForColumn(i), width / kLargestShare);
    setColumnWidth(i, std::max({wanted, contents, kRoomForAWord}));
  }
}

void ListTable::resizeEvent(QResizeEvent* event) {
  TableView::resizeEvent(event);
  SizeColumns();
}

void ListTable::TellClick(const QModelIndex& row) {
  ++clicks_told_;
  kit_.guard(list_.name(), [&] { list_.Click(model_->SlotOf(row.row())); });
}

// A press on another row makes that the current one, which reports the click; on the current row nothing
// changes, so the press itself does.
void ListTable::mousePressEvent(QMouseEvent* event) {
  const unsigned told = clicks_told_;
  TableView::mousePressEvent(event);
  const QModelIndex row = indexAt(event->position().toPoint());
  if (told == clicks_told_ && row.isValid()) TellClick(row);
}

void ListTable::keyPressEvent(QKeyEvent* event) {
  // The toolkit itself makes a request for the menu of the menu key alone.
  if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
    QContextMenuEvent request(QContextMenuEvent::Keyboard, {}, {});
    return contextMenuEvent(&request);
  }
  const bool presses = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                       event->key() == Qt::Key_Space || event->key() == Qt::Key_Select;
  if (!presses || !currentIndex().isValid()) return TableView::keyPressEvent(event);
  event->accept();
  if (!event->isAutoRepeat()) TellClick(currentIndex());
}

// The mouse's way to the menu is the button's release.
void ListTable::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (event->reason() == QContextMenuEvent::Mouse || !currentIndex().isValid()) return;
  scrollTo(currentIndex());
  setProperty(kMenuPlace, viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()));
  kit_.guard(list_.name(), [&] { list_.right_button_up.Raise(); });
  setProperty(kMenuPlace, QVariant());
}

void ListTable::mouseReleaseEvent(QMouseEvent* event) {
  TableView::mouseReleaseEvent(event);
  if (event->button() == Qt::RightButton && currentIndex().isValid())
    kit_.guard(list_.name(), [&] { list_.right_button_up.Raise(); });
}

}  // namespace zendrix::qt
