// Colours and heights of the few rows of a table that have their own, by a key that stays with the row.
#pragma once

#include <cstdint>
#include <unordered_map>

#include "widgets/control.h"

namespace zendrix::widgets {

inline constexpr int kDefaultHeight = -1;

class RowLooks {
 public:
  // These tell whether anything has changed. Colour 0 is none; setting a row's colour gives it to every cell.
  bool SetRowColor(std::uint32_t key, Colour colour);
  bool SetCellColor(std::uint32_t key, int col, Colour colour);
  bool SetHeight(std::uint32_t key, int twips);
  void Clear();

  Colour CellColor(std::uint32_t key, int col) const;
  int Height(std::uint32_t key) const;
  bool has_heights() const { return !heights_.empty(); }

 private:
  struct Colours {
    Colour row = 0;
    std::unordered_map<int, Colour> cells;  // those that differ from the row's
    bool operator==(const Colours&) const = default;
  };

  std::unordered_map<std::uint32_t, Colours> colours_;
  std::unordered_map<std::uint32_t, int> heights_;
};

}  // namespace zendrix::widgets
