// The rule of a search in the grid, cell by cell.
#pragma once

#include <optional>
#include <string>

#include "admin/row_search.h"
#include "core/letter_case.h"

namespace zendrix::testing {

inline std::optional<admin::CellPlace> NaiveFind(const admin::EventGrid& grid, const std::string& wanted,
                                                 bool match_case, admin::CellPlace from) {
  const auto cased = [&](const std::string& text) { return match_case ? text : core::UpperCase(text); };
  const auto takes_part = [&](int col) {
    return col == admin::kColWhole || (col != admin::kColDescription && grid.column(col).width > 0);
  };
  for (; from.row < grid.Rows(); from = {from.row + 1}) {
    if (grid.RowHeight(from.row) == 0) continue;
    for (; from.col < grid.Cols(); ++from.col) {
      if (!takes_part(from.col)) continue;
      const std::size_t found = cased(grid.Text(from.row, from.col)).find(cased(wanted), from.position - 1);
      if (found != std::string::npos) return admin::CellPlace{from.row, from.col, found + 1};
      from.position = 1;
    }
  }
  return std::nullopt;
}

}  // namespace zendrix::testing
