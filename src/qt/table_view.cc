#include "qt/table_view.h"

#include <QHeaderView>
#include <QLabel>

namespace zendrix::qt {

TableView::TableView(const QString& empty_text) : empty_(new QLabel(empty_text, viewport())) {
  constexpr int kRowPadding = 12;
  setSelectionBehavior(SelectRows);
  setSelectionMode(SingleSelection);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setTabKeyNavigation(false);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  setEditTriggers(NoEditTriggers);
  setHorizontalScrollMode(ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  horizontalHeader()->setMinimumSectionSize(24);
  empty_->setTextFormat(Qt::PlainText);
  empty_->setProperty("role", QStringLiteral("empty"));
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setWordWrap(true);
  empty_->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TableView::setModel(QAbstractItemModel* model) {
  QTableView::setModel(model);
  const auto update = [this] { PlaceEmptyText(); };
  connect(model, &QAbstractItemModel::rowsInserted, this, update);
  connect(model, &QAbstractItemModel::modelReset, this, update);
  PlaceEmptyText();
}

void TableView::SetEmptyText(const QString& text) {
  empty_->setText(text);
  PlaceEmptyText();
}

void TableView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  PlaceEmptyText();
}

void TableView::PlaceEmptyText() {
  const bool empty = model() && model()->rowCount() == 0;
  empty_->setVisible(empty);
  // What stands inside a table is in no tree of an assistive program.
  setAccessibleDescription(empty ? empty_->text() : QString());
  empty_->setGeometry(viewport()->rect().adjusted(24, 24, -24, -24));
}

}  // namespace zendrix::qt
