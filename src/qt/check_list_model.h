// The entries of a logical check list for a view, read on demand. A change of an entry's check state is an
// act of the user's.
#pragma once

#include <QAbstractListModel>

#include "qt/bind.h"
#include "widgets/check_list.h"

namespace zendrix::qt {

class CheckListModel : public QAbstractListModel {
 public:
  CheckListModel(widgets::CheckList& list, const Toolkit& kit, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  const widgets::CheckList::Entry& At(const QModelIndex& index) const {
    return list_.entries()[static_cast<std::size_t>(index.row())];
  }

  widgets::CheckList& list_;
  SlotGuard& guard_;
  int shown_;
  std::vector<widgets::Connection> links_;
};

}  // namespace zendrix::qt
