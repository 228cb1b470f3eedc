#include "qt/bind_page_grid.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

#include "qt/text_edge.h"

namespace zendrix::qt {

PageTable::PageTable(widgets::PageGrid& grid, QScrollBar& pages, const QString& accessible_name,
                     const QString& empty_text, const Toolkit& kit)
    : TableView(empty_text), grid_(grid), pages_(pages), kit_(kit), model_(new PageGridModel(grid, this)) {
  BindControl(grid, this, accessible_name);
  setModel(model_);
  setSelectionMode(ContiguousSelection);
  setWordWrap(true);
  setTextElideMode(Qt::ElideRight);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  horizontalHeader()->setStretchLastSection(true);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int section, int, int pixels) {
    // The last column takes the rest of the window; its width in the program stays as it is.
    if (applying_ || section + 1 >= model_->columnCount()) return;
    applying_ = true;
    kit_.guard(grid_.name(), [&] { grid_.SetColWidth(section, pixels * kTwipsPerPixel); });
    applying_ = false;
  });
  connect(model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
    row_ = currentIndex().row();
    column_ = std::max(currentIndex().column(), 0);
  });
  connect(model_, &QAbstractItemModel::modelReset, this, [this] {
    ShowColumns();
    verticalScrollBar()->setValue(0);
    KeepPlace();
  });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this] { grid_.TopRow = std::max(rowAt(0), 0) + 1; });
  Keep(this, grid_.columns_changed.Connect([this] { ShowColumns(); }));
  Reflect(this, grid_.HeaderHeight, [this](int) { ShowHeights(); });
  Reflect(this, grid_.RowHeightMin, [this](int) { ShowHeights(); });
  ShowColumns();
}

void PageTable::ShowColumns() {
  if (applying_) return;
  applying_ = true;
  for (int i = 0; i < model_->columnCount(); ++i) setColumnWidth(i, grid_.ColWidth(i) / kTwipsPerPixel);
  applying_ = false;
}

void PageTable::ShowHeights() {
  constexpr int kLines = 2;
  constexpr int kPadding = 8;
  const int two_lines = fontMetrics().lineSpacing() * kLines + kPadding;
  verticalHeader()->setDefaultSectionSize(std::max(grid_.RowHeightMin / kTwipsPerPixel, two_lines));
  horizontalHeader()->setMinimumHeight(grid_.HeaderHeight / kTwipsPerPixel);
  TellRoom();
}

// The cursor stays at its place in the window while pages are turned under it.
void PageTable::KeepPlace() {
  if (row_ < 0 || model_->rowCount() == 0) return;
  const int last = std::min(model_->rowCount(), std::max(grid_.RowsInSight.Get(), 1)) - 1;
  const int row = std::min(row_, last);
  setCurrentIndex(model_->index(row, std::min(column_, model_->columnCount() - 1)));
}

void PageTable::TellRoom() {
  const int rows = viewport()->height() / verticalHeader()->defaultSectionSize();
  kit_.guard(grid_.name(), [&] { grid_.RowsInSight = rows; });
}

void PageTable::resizeEvent(QResizeEvent* event) {
  TableView::resizeEvent(event);
  TellRoom();
}

// Whether the key leads out of what is seen of the page, and the pages have been turned for it.
bool PageTable::TurnPage(const QKeyEvent& event) {
  const int row = currentIndex().row();
  const bool control = event.modifiers().testFlag(Qt::ControlModifier);
  auto action = QAbstractSlider::SliderNoAction;
  switch (event.key()) {
    case Qt::Key_Up:
      if (row == 0) action = QAbstractSlider::SliderSingleStepSub;
      break;
    case Qt::Key_Down:
      if (row + 1 >= grid_.RowsInSight && grid_.RowsInSight < model_->rowCount())
        action = QAbstractSlider::SliderSingleStepAdd;
      break;
    case Qt::Key_PageUp:
      action = QAbstractSlider::SliderPageStepSub;
      break;
    case Qt::Key_PageDown:
      action = QAbstractSlider::SliderPageStepAdd;
      break;
    case Qt::Key_Home:
      if (control) action = QAbstractSlider::SliderToMinimum;
      break;
    case Qt::Key_End:
      if (control) action = QAbstractSlider::SliderToMaximum;
      break;
    default:
      break;
  }
  if (action == QAbstractSlider::SliderNoAction) return false;
  if (pages_.isEnabled()) pages_.triggerAction(action);
  return true;
}

void PageTable::CopyRows() const {
  QModelIndexList rows = selectionModel()->selectedRows();
  if (rows.isEmpty()) return;
  std::sort(rows.begin(), rows.end());
  QString text;
  for (const QModelIndex& row : rows) {
    QStringList fields;
    for (int i = 0; i < model_->columnCount(); ++i) fields << row.siblingAtColumn(i).data().toString();
    text += fields.join(QLatin1Char('\t')).trimmed() + QLatin1Char('\n');
  }
  QGuiApplication::clipboard()->setText(text);
}

void PageTable::ShowWholeText() {
  const QModelIndex cell = currentIndex();
  const QPoint place = viewport()->mapToGlobal(visualRect(cell).bottomLeft());
  QToolTip::showText(place, cell.data(Qt::ToolTipRole).toString(), viewport());
}

void PageTable::keyPressEvent(QKeyEvent* event) {
  event->accept();
  if (event->matches(QKeySequence::Copy)) return CopyRows();
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && currentIndex().isValid()) return ShowWholeText();
  if (event->modifiers().testFlag(Qt::ShiftModifier) || !TurnPage(*event)) TableView::keyPressEvent(event);
}

void PageTable::wheelEvent(QWheelEvent* event) {
  if (event->angleDelta().y() == 0) return TableView::wheelEvent(event);
  if (pages_.isEnabled()) QCoreApplication::sendEvent(&pages_, event);
  event->accept();
}

}  // namespace zendrix::qt
