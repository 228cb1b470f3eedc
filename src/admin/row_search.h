// Looks for a text in the cells of a grid, row by row and column by column. The search reads whole
// descriptions and none that was shortened: a column takes part when it is shown, but never the last, and the
// hidden whole description always does. Every distinct text is looked through once; only rows that may hold
// the text have their cells made.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "admin/event_grid.h"
#include "admin/text_answers.h"
#include "admin/text_search.h"

namespace zendrix::admin {

// A cell and a character in it, counted from 1.
struct CellPlace {
  int row = 1;
  int col = 1;
  std::size_t position = 1;
  bool operator==(const CellPlace&) const = default;
};

class RowSearch {
 public:
  // `grid` outlives this object and does not change meanwhile.
  RowSearch(const EventGrid& grid, TextSearch text);

  // The first hit in a cell from this place on. A row of height 0 is passed over with what is asked of it.
  std::optional<CellPlace> Find(const CellPlace& from);

 private:
  enum class Answer : std::uint8_t { kUnknown, kNo, kYes };

  bool TakesPart(int col) const;
  std::optional<CellPlace> FindInRow(CellPlace from) const;
  // False only where no cell can hold the text.
  bool MayHold(std::uint32_t row);
  bool SourceHolds(std::uint32_t row) const;
  bool TimeHolds(std::uint32_t row);

  const EventGrid& grid_;
  const EventRows& rows_;
  const TextSearch text_;
  // Columns that hardly ever take part do: every cell is looked at.
  const bool every_cell_;
  // Whether times made from keys are looked at.
  const bool times_;
  std::vector<Answer> sources_;
  TextAnswers descriptions_;
  // The time looked at last, and whether it holds the text.
  std::uint64_t last_time_ = 0;
  Answer last_answer_ = Answer::kUnknown;
};

}  // namespace zendrix::admin
