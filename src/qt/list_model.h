// The rows of a logical list for a view, read on demand. The model publishes as many rows as it has told the
// view of: rows pushed meanwhile do not exist for the view until their batch ends.
#pragma once

#include <QAbstractTableModel>

#include "qt/pictures.h"
#include "widgets/list_view.h"

namespace zendrix::qt {

class ListModel : public QAbstractTableModel {
 public:
  // Pictures of rows are those of the numbered list `picture_list` ("h3").
  ListModel(widgets::ListView& list, Pictures& pictures, QString picture_list, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // Row of a slot, or -1 while the view does not know it; and back.
  int RowOf(widgets::ListView::Slot slot) const;
  widgets::ListView::Slot SlotOf(int row) const {
    return static_cast<widgets::ListView::Slot>(shown_ - 1 - row);
  }

 private:
  QIcon Picture(int number, bool dimmed) const;

  widgets::ListView& list_;
  Pictures& pictures_;
  QString picture_list_;
  int shown_ = 0;
  std::vector<widgets::Connection> links_;
};

}  // namespace zendrix::qt
