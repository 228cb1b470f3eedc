#include "widgets/row_looks.h"

namespace zendrix::widgets {

bool RowLooks::SetRowColor(std::uint32_t key, Colour colour) {
  if (colour == 0) return colours_.erase(key) > 0;
  Colours& colours = colours_[key];
  if (colours.row == colour && colours.cells.empty()) return false;
  colours = {colour, {}};
  return true;
}

bool RowLooks::SetCellColor(std::uint32_t key, int col, Colour colour) {
  if (CellColor(key, col) == colour) return false;
  Colours& colours = colours_[key];
  if (colours.row == colour)
    colours.cells.erase(col);
  else
    colours.cells[col] = colour;
  if (colours.row == 0 && colours.cells.empty()) colours_.erase(key);
  return true;
}

bool RowLooks::SetHeight(std::uint32_t key, int twips) {
  if (Height(key) == twips) return false;
  if (twips == kDefaultHeight)
    heights_.erase(key);
  else
    heights_[key] = twips;
  return true;
}

void RowLooks::Clear() {
  colours_.clear();
  heights_.clear();
}

Colour RowLooks::CellColor(std::uint32_t key, int col) const {
  const auto found = colours_.find(key);
  if (found == colours_.end()) return 0;
  const auto cell = found->second.cells.find(col);
  return cell == found->second.cells.end() ? found->second.row : cell->second;
}

int RowLooks::Height(std::uint32_t key) const {
  const auto found = heights_.find(key);
  return found == heights_.end() ? kDefaultHeight : found->second;
}

}  // namespace zendrix::widgets
