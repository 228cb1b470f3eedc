#include "qt/grid_model.h"

#include <QBrush>
#include <QColor>
#include <algorithm>

#include "qt/contrast.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

// No window has room for more, and a line of the file may be millions of characters long.
constexpr std::size_t kMostShown = 2000;

// An arrow in words.
QVariant SortedIn(widgets::SortArrow arrow) {
  switch (arrow) {
    case widgets::SortArrow::kUp:
      return QStringLiteral("Sorted ascending");
    case widgets::SortArrow::kDown:
      return QStringLiteral("Sorted descending");
    case widgets::SortArrow::kNone:
      break;
  }
  return {};
}

}  // namespace

GridModel::GridModel(widgets::Grid& grid, Pictures& pictures, QString picture_list, QObject* parent)
    : QAbstractTableModel(parent),
      grid_(grid),
      pictures_(pictures),
      picture_list_(std::move(picture_list)),
      shown_(grid.DataRows()),
      columns_(grid.Cols()) {
  links_.push_back(grid_.rows_inserted.Connect([this](int place, int count) { TakeInserted(place, count); }));
  links_.push_back(grid_.rows_changed.Connect([this] { TakeAll(); }));
  links_.push_back(grid_.looks_changed.Connect([this] {
    if (shown_ == 0 || columns_ == 0) return;
    emit dataChanged(index(0, 0), index(shown_ - 1, columns_ - 1), {Qt::BackgroundRole, Qt::ForegroundRole});
  }));
  links_.push_back(grid_.cleared.Connect([this] {
    beginResetModel();
    shown_ = 0;
    endResetModel();
  }));
  links_.push_back(grid_.rows_sorted.Connect([this] {
    emit layoutAboutToBeChanged();
    emit layoutChanged();
  }));
  links_.push_back(grid_.columns_changed.Connect([this] {
    if (grid_.Cols() != columns_) {
      TakeAll();
    } else if (columns_ > 0) {
      emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
    }
  }));
}

void GridModel::TakeInserted(int place, int count) {
  if (shown_ + count != grid_.DataRows()) return TakeAll();
  coming_place_ = place;
  coming_count_ = count;
  beginInsertRows({}, place - 1, place + count - 2);
  coming_count_ = 0;
  shown_ += count;
  endInsertRows();
}

int GridModel::GridRow(int row) const {
  const int known = row + 1;
  return grid_.RowOfKnown(known >= coming_place_ ? known + coming_count_ : known);
}

void GridModel::TakeAll() {
  beginResetModel();
  columns_ = grid_.Cols();
  shown_ = grid_.DataRows();
  endResetModel();
}

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : shown_;
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QString GridModel::Shown(const std::string& text) {
  return ToQt(std::string_view(text).substr(0, kMostShown)).trimmed();
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const int row = GridRow(index.row());
  const int col = index.column();
  if (row < 1 || row > grid_.DataRows()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return Shown(grid_.Text(row, col));
    case Qt::DecorationRole: {
      const int picture = grid_.Picture(row, col);
      return picture > 0 ? QVariant(pictures_.Numbered(picture_list_, picture)) : QVariant();
    }
    case Qt::ToolTipRole:
      return ToolTipText(std::string_view(grid_.Tip(row, col)).substr(0, kMostShown));
    case kLongTextRole:
    case Qt::AccessibleTextRole:
      return Shown(grid_.Tip(row, col));
    case kWholeTextRole:
      return ToQt(grid_.Tip(row, col));
    case Qt::BackgroundRole:
    case Qt::ForegroundRole:
      return Look(row, col, role);
    case Qt::TextAlignmentRole:
      return QVariant((grid_.column(col).align == widgets::Align::kRight ? Qt::AlignRight : Qt::AlignLeft) |
                      Qt::AlignVCenter);
    default:
      return {};
  }
}

// A cell with a colour of its own has its text in whichever of black and white stands out from it.
QVariant GridModel::Look(int row, int col, int role) const {
  const widgets::Colour colour = grid_.CellColor(row, col);
  if (colour == 0) return {};
  constexpr widgets::Colour kByte = 0xFF;
  const auto byte = [&](int shift) { return static_cast<int>(colour >> shift & kByte); };
  const QColor own(byte(0), byte(8), byte(16));
  if (role == Qt::BackgroundRole) return QBrush(own);
  return QBrush(Contrast(Qt::black, own) >= Contrast(Qt::white, own) ? Qt::black : Qt::white);
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= std::min(columns_, grid_.Cols())) return {};
  const widgets::GridColumn& column = grid_.column(section);
  if (role == Qt::DisplayRole) return ToQt(column.heading);
  if (role == Qt::AccessibleDescriptionRole) return SortedIn(column.arrow);
  if (role == Qt::TextAlignmentRole)
    return QVariant((column.align == widgets::Align::kRight ? Qt::AlignRight : Qt::AlignLeft) |
                    Qt::AlignVCenter);
  return {};
}

}  // namespace zendrix::qt
