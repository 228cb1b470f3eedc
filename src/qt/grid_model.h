// The rows of a logical grid for a view, read on demand.
#pragma once

#include <QAbstractTableModel>

#include "qt/pictures.h"
#include "widgets/grid.h"

namespace zendrix::qt {

// The role of a cell's full text, where the cell itself shows a shortened one.
inline constexpr int kWholeTextRole = Qt::UserRole;
// As much of it as a window may have room for.
inline constexpr int kLongTextRole = Qt::UserRole + 1;

class GridModel : public QAbstractTableModel {
 public:
  // Pictures of cells are those of the numbered list `picture_list` ("grid").
  GridModel(widgets::Grid& grid, Pictures& pictures, QString picture_list, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // The grid's row that the view's row stands for. Rows that the view does not know yet are passed over.
  int GridRow(int row) const;

 private:
  void TakeInserted(int place, int count);
  void TakeAll();
  QVariant Look(int row, int col, int role) const;
  static QString Shown(const std::string& text);

  widgets::Grid& grid_;
  Pictures& pictures_;
  QString picture_list_;
  int shown_ = 0;
  // The view is just being told of these.
  int coming_place_ = 0, coming_count_ = 0;
  int columns_ = 0;
  std::vector<widgets::Connection> links_;
};

}  // namespace zendrix::qt
