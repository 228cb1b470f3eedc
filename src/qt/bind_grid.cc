#include "qt/bind_grid.h"

#include <QClipboard>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

// What a cell's edges take of its width. A text that is shortened to its column's width needs them beside it,
// or it would be shortened a second time.
constexpr int kCellEdges = 20;

// A cell holds its text shortened to the column's width in the program. Where the window gives the column
// more room, the whole text is drawn. A colour of the cell's own is painted here: the look of the program
// gives cells an inner edge, and with one the style leaves their colours out. It is seen in a selected row as
// well, between two lines that show the selection.
class CellDelegate : public QStyledItemDelegate {
 public:
  CellDelegate(widgets::Grid& grid, QObject* parent) : QStyledItemDelegate(parent), grid_(grid) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QVariant own = index.data(Qt::BackgroundRole);
    if (!own.isValid()) return QStyledItemDelegate::paint(painter, option, index);
    QStyleOptionViewItem shown = option;
    shown.state.setFlag(QStyle::State_Selected, false);
    painter->fillRect(shown.rect, own.value<QBrush>());
    QStyledItemDelegate::paint(painter, shown, index);
    if (!option.state.testFlag(QStyle::State_Selected)) return;
    constexpr int kEdge = 2;
    const QBrush frame = index.data(Qt::ForegroundRole).value<QBrush>();
    painter->fillRect(QRect(option.rect.topLeft(), QSize(option.rect.width(), kEdge)), frame);
    painter->fillRect(option.rect.adjusted(0, option.rect.height() - kEdge, 0, 0), frame);
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const int column = index.column();
    const int room = (option->rect.width() - kCellEdges) * kTwipsPerPixel;
    if (column + 1 != grid_.Cols() || room <= grid_.column(column).width) return;
    option->text = index.data(kLongTextRole).toString();
  }

 private:
  widgets::Grid& grid_;
};

}  // namespace

GridHeader::GridHeader(widgets::Grid& grid, Pictures& pictures, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), grid_(grid), pictures_(pictures) {
  setSectionsClickable(true);
  setStretchLastSection(true);
}

void GridHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
  painter->save();
  QHeaderView::paintSection(painter, rect, section);
  painter->restore();
  constexpr int kEdge = 10;
  const widgets::SortArrow arrow =
      section < grid_.Cols() ? grid_.column(section).arrow : widgets::SortArrow::kNone;
  if (arrow == widgets::SortArrow::kNone) return;
  const QPixmap picture =
      pictures_.Pixmap(arrow == widgets::SortArrow::kUp ? QStringLiteral("up") : QStringLiteral("down"),
                       kEdge, devicePixelRatioF());
  const int text = fontMetrics().horizontalAdvance(model()->headerData(section, Qt::Horizontal).toString());
  const int x = std::min(rect.left() + 6 + text + 6, rect.right() - kEdge - 3);
  painter->drawPixmap(x, rect.center().y() - kEdge / 2, picture);
}

void GridHeader::mouseReleaseEvent(QMouseEvent* event) {
  QHeaderView::mouseReleaseEvent(event);
  grid_.mouse_used.Raise();
}

// Of two quick clicks on a heading each counts. To the toolkit the second is a double click and no press.
void GridHeader::mouseDoubleClickEvent(QMouseEvent* event) {
  QHeaderView::mouseDoubleClickEvent(event);
  QHeaderView::mousePressEvent(event);
}

GridTable::GridTable(widgets::Grid& grid, const QString& picture_list, const QString& accessible_name,
                     const QString& empty_text, const Toolkit& kit)
    : TableView(empty_text),
      grid_(grid),
      kit_(kit),
      model_(new GridModel(grid, kit.pictures, picture_list, this)) {
  BindControlButUse(grid, this, accessible_name);
  auto* header = new GridHeader(grid, kit_.pictures, this);
  header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  header->setHighlightSections(false);
  setHorizontalHeader(header);
  setModel(model_);
  setIconSize(QSize(16, 16));
  setTextElideMode(Qt::ElideMiddle);
  setItemDelegate(new CellDelegate(grid, this));
  connect(header, &QHeaderView::sectionClicked, this,
          [this](int section) { kit_.guard(grid_.name(), [&] { grid_.header_clicked.Raise(section); }); });
  connect(header, &QHeaderView::sectionResized, this, [this](int section, int, int pixels) {
    // The last column takes the rest of the window; its width in the program stays as it is.
    if (applying_ || section + 1 >= grid_.Cols()) return;
    applying_ = true;
    grid_.SetColWidth(section, pixels * kTwipsPerPixel);
    applying_ = false;
  });
  setSelectionMode(ContiguousSelection);
  connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { TellSelection(); });
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { TellSelection(); });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { TellScrolled(); });
  connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { TellScrolled(); });
  connect(model_, &QAbstractItemModel::modelReset, this, [this] { ShowColumns(); });
  // What is selected stays selected when rows come above it.
  connect(model_, &QAbstractItemModel::rowsInserted, this, [this] { TellSelection(); });
  for (QObject* part : std::initializer_list<QObject*>{this, viewport(), header, header->viewport(),
                                                       verticalScrollBar(), horizontalScrollBar()})
    part->installEventFilter(this);
  Keep(this, grid_.columns_changed.Connect([this] { ShowColumns(); }));
  for (auto* end : {&grid_.Row, &grid_.RowSel}) Keep(this, end->changed.Connect([this] { ShowRow(); }));
  Keep(this, grid_.TopRow.changed.Connect([this] { ShowTop(); }));
  Keep(this, grid_.LeftCol.changed.Connect([this] { ShowLeft(); }));
  grid_.cell_under_pointer = [view = QPointer(this)] {
    return view ? view->CellUnderPointer() : widgets::Grid::Cell{};
  };
  Keep(this, grid_.looks_changed.Connect([this] { ShowHeights(); }));
  for (auto* moved : {&grid_.rows_sorted, &grid_.rows_changed, &grid_.cleared})
    Keep(this, moved->Connect([this] { ShowHeights(); }));
  ShowColumns();
}

// In tens of twips, what a character takes on average in capitals and digits, which hosts and numbers are
// mostly made of; and enough for the shortest heading to stand whole beside its arrow in a column that is as
// wide as the heading and one character more.
void GridTable::TellFontWidth() {
  constexpr double kTensOfTwips = 10;
  constexpr int kArrowRoom = 300;
  const QString capitals = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789");
  const auto twips = [this](const QString& text) {
    return fontMetrics().horizontalAdvance(text) * double{kTwipsPerPixel};
  };
  double widest = twips(capitals) / static_cast<double>(capitals.size());
  for (int i = 0; i < grid_.Cols(); ++i) {
    const QString heading = ToQt(grid_.column(i).heading);
    if (!heading.isEmpty())
      widest = std::max(widest, (twips(heading) + kArrowRoom) / static_cast<double>(heading.size() + 1));
  }
  grid_.FontWidth = widest / kTensOfTwips;
}

void GridTable::ShowColumns() {
  if (applying_) return;
  if (std::exchange(known_columns_, grid_.Cols()) != grid_.Cols()) TellFontWidth();
  applying_ = true;
  const int columns = std::min(grid_.Cols(), model_->columnCount());
  for (int i = 0; i < columns; ++i) {
    const int twips = grid_.column(i).width;
    setColumnHidden(i, twips == 0);
    if (twips > 0) setColumnWidth(i, twips / kTwipsPerPixel + (i + 1 == columns ? kCellEdges : 0));
  }
  horizontalHeader()->viewport()->update();
  applying_ = false;
}

void GridTable::ShowRow() {
  if (applying_ || grid_.Row < 1 || grid_.Row > model_->rowCount()) return;
  applying_ = true;
  setCurrentIndex(model_->index(grid_.Row - 1, 0));
  applying_ = false;
}

// The cursor's row is the one where the selection began.
void GridTable::TellSelection() {
  const QModelIndex current = currentIndex();
  if (applying_ || !current.isValid()) return;
  const QItemSelection selection = selectionModel()->selection();
  int begin = current.row();
  if (!selection.isEmpty() && selection.contains(current))
    begin = current.row() == selection.first().top() ? selection.last().bottom() : selection.first().top();
  applying_ = true;
  const int col = grid_.Col;
  grid_.Select(begin + 1, col, current.row() + 1, begin == current.row() ? col : grid_.Cols() - 1);
  applying_ = false;
}

// Rows that have a height of their own are rare; without any nothing is looked at.
void GridTable::ShowHeights() {
  if (!grid_.has_heights() && !has_heights_) return;
  has_heights_ = grid_.has_heights();
  QHeaderView* rows = verticalHeader();
  for (int row = 0; row < model_->rowCount(); ++row) {
    const int twips = grid_.RowHeight(row + 1);
    rows->setSectionHidden(row, twips == 0);
    if (twips != 0) rows->resizeSection(row, twips > 0 ? twips / kTwipsPerPixel : rows->defaultSectionSize());
  }
}

// A press that began before is let go all the same.
bool GridTable::eventFilter(QObject* receiver, QEvent* event) {
  if (!grid_.enabled) {
    switch (event->type()) {
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
      case QEvent::KeyPress:
      case QEvent::ContextMenu:
        return true;
      default:
        break;
    }
  }
  return TableView::eventFilter(receiver, event);
}

void GridTable::CopyRows() const {
  QString text;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      QStringList fields;
      for (int col = 0; col < model_->columnCount(); ++col)
        if (!isColumnHidden(col)) fields << model_->index(row, col).data(kWholeTextRole).toString();
      text += fields.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
  }
  if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void GridTable::ShowWholeText() {
  const QModelIndex cell = currentIndex().siblingAtColumn(model_->columnCount() - 1);
  const QPoint place = viewport()->mapToGlobal(visualRect(cell).bottomLeft());
  QToolTip::showText(place, cell.data(Qt::ToolTipRole).toString(), viewport());
}

// The heading at this place, from 0, of those in sight.
void GridTable::ClickHeader(int place) {
  for (int col = 0; col < model_->columnCount(); ++col) {
    if (isColumnHidden(col) || place-- > 0) continue;
    return kit_.guard(grid_.name(), [&] { grid_.header_clicked.Raise(col); });
  }
}

void GridTable::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool control = event->modifiers().testFlag(Qt::ControlModifier);
  if (event->matches(QKeySequence::Copy)) {
    CopyRows();
  } else if (control && event->key() >= Qt::Key_1 && event->key() <= Qt::Key_9) {
    ClickHeader(event->key() - Qt::Key_1);
  } else if (enter && control && currentIndex().isValid()) {
    ShowWholeText();
  } else if ((enter || event->key() == Qt::Key_Space) && currentIndex().isValid()) {
    if (!event->isAutoRepeat()) TellClick(currentIndex());
  } else {
    TableView::keyPressEvent(event);
  }
}

// The last rows cannot be scrolled to the top: then it is another row that stands there.
void GridTable::ShowTop() {
  if (scrolling_) return;
  executeDelayedItemsLayout();
  verticalScrollBar()->setValue(grid_.TopRow - 1);
  TellScrolled();
}

// The narrow first column stays in sight until the user scrolls it away.
void GridTable::ShowLeft() {
  if (scrolling_) return;
  const int column = std::clamp<int>(grid_.LeftCol, 0, model_->columnCount() - 1);
  const bool at_start = horizontalScrollBar()->value() == 0 && column <= 1;
  executeDelayedItemsLayout();
  if (!at_start && column >= 0) horizontalScrollBar()->setValue(horizontalHeader()->sectionPosition(column));
}

void GridTable::TellScrolled() {
  scrolling_ = true;
  grid_.TopRow = std::max(0, rowAt(0)) + 1;
  grid_.LeftCol = std::max(0, columnAt(0));
  scrolling_ = false;
  grid_.scrolled.Raise();
}

void GridTable::TellClick(const QModelIndex& place) {
  const int row = place.isValid() ? model_->GridRow(place.row()) : 0;
  kit_.guard(grid_.name(), [&] { grid_.row_clicked.Raise(row); });
}

void GridTable::mouseReleaseEvent(QMouseEvent* event) {
  TableView::mouseReleaseEvent(event);
  if (event->button() == Qt::LeftButton) TellClick(indexAt(event->position().toPoint()));
}

widgets::Grid::Cell GridTable::CellUnderPointer() const {
  if (!viewport()->underMouse()) return {};
  const QModelIndex place = indexAt(viewport()->mapFromGlobal(QCursor::pos()));
  if (!place.isValid()) return {};
  return {model_->GridRow(place.row()), place.column()};
}

}  // namespace zendrix::qt
