// A report list: rows with a key, a tag, a text with a picture and further columns. Rows are only ever
// inserted at the top, so they are stored oldest first: an insertion is a push, a row keeps its storage index
// ("slot") for the life of the list, and a model can read rows on demand without copying any.
//
// Views are told of new rows once per batch: between BeginBatch and EndBatch insertions raise no signal, so
// that a view which reads the list meanwhile (the event loop may run) still sees the rows that it knows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "widgets/control.h"

namespace zendrix::widgets {

struct ListColumn {
  std::string heading;
  double share = 0;  // of the list's width; 0 when `twips` counts
  int twips = 0;
  bool operator==(const ListColumn&) const = default;
};

// A further column of a row. Pictures are numbered from 1; 0 is none.
struct SubItem {
  std::string text;
  int picture = 0;
};

struct ListRow {
  std::string key;
  std::string tag;
  std::string text;
  int picture = 0;
  std::vector<SubItem> sub_items;
  bool ghosted = false;  // dimmed, its texts in grey
};

class ListView : public Control {
 public:
  using Slot = std::uint32_t;

  explicit ListView(std::string name) : Control(std::move(name)) {}

  Observed<std::vector<ListColumn>> columns;
  // Shown in place of the rows while there are none; empty for the view's own words.
  Observed<std::string> empty_text;

  // Inserts above all others; the row stays open for AddSubItem. Nothing when the key is taken.
  std::optional<Slot> InsertTop(std::string key, std::string text, int picture, std::string tag);
  void AddSubItem(Slot slot, std::string text, int picture = 0);
  void SetSubItem(Slot slot, std::size_t index, std::string text, int picture);
  void Ghost(Slot slot);
  // Removes all rows, and with them the selection. Told at once, also within a batch.
  void Clear();

  void BeginBatch() { ++batch_; }
  void EndBatch();

  std::size_t size() const { return rows_.size(); }
  // Row by position from the top, from 0.
  const ListRow& at(std::size_t position) const { return rows_[rows_.size() - 1 - position]; }
  const ListRow& in_slot(Slot slot) const { return rows_[slot]; }
  std::optional<Slot> Find(std::string_view key) const;

  std::optional<Slot> selected() const { return selected_; }
  // Selects a row on the program's behalf; selecting the selected one raises nothing.
  void Select(std::optional<Slot> slot);
  // The user acted on a row: it is selected, and counts as clicked also when it was selected before.
  void Click(Slot slot);
  // The topmost row that the view shows; nothing only when the list is empty.
  std::optional<Slot> first_visible() const;
  // How many rows lie above the topmost shown one; told by the view as it scrolls.
  void SetScrolledRows(std::size_t rows) { scrolled_ = rows; }

  // The user clicked this row, or moved to it by the keyboard.
  Signal<Slot> item_clicked;
  Signal<> right_button_up;

  Signal<> rows_added;  // one or more rows on top
  Signal<Slot> row_changed;
  Signal<> cleared;
  Signal<> selection_changed;
  // Asks for this row to be scrolled into view, also when it is selected already.
  Signal<Slot> reveal;

  // The list as text, one line per row, columns separated by " | ", pictures in brackets, "~" in front of a
  // ghosted row.
  std::string Print() const;

 private:
  std::vector<ListRow> rows_;  // oldest first
  std::unordered_map<std::string, Slot> keys_;
  std::optional<Slot> selected_;
  std::size_t scrolled_ = 0;
  int batch_ = 0;
  std::size_t told_ = 0;  // rows that the views know of
};

// Keeps a batch open for as long as it lives.
class ListBatch {
 public:
  explicit ListBatch(ListView& list) : list_(list) { list_.BeginBatch(); }
  ~ListBatch() { list_.EndBatch(); }
  ListBatch(const ListBatch&) = delete;
  ListBatch& operator=(const ListBatch&) = delete;

 private:
  ListView& list_;
};

}  // namespace zendrix::widgets
