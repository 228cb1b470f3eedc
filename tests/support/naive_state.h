// The rules of the System State read word for word, on the texts of a view's cells: slow, and without any
// thought of its own.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "admin/event_grid.h"
#include "core/letter_case.h"

namespace zendrix::testing {

// The items of a monitor at a shown time, or the one entry "**Empty Array**".
inline std::vector<std::string> NaiveState(const admin::EventGrid& view, std::string_view monitor,
                                           std::string_view date_text) {
  const std::string wanted = core::UpperCase(monitor);
  const int last = view.Rows() - 1;
  const auto is_of = [&](int row) {
    return core::UpperCase(view.Text(row, admin::kColMonitor).substr(5)) == wanted;
  };
  const auto describes = [&](int row, const char* text) { return view.Text(row, admin::kColWhole) == text; };

  int sel = 0;
  for (int row = 1; row <= last && sel == 0; ++row)
    if (core::UpperCase(view.Text(row, admin::kColDateTime)) == core::UpperCase(date_text)) sel = row;

  bool no_baseline = true;
  int start = last;
  for (int row = std::max(sel, 1); row <= last && no_baseline; ++row) {
    if (!is_of(row) || !describes(row, "** Start baseline **")) continue;
    start = row;
    no_baseline = false;
  }

  int end = 0;
  for (int row = start; row >= 1 && end == 0; --row)
    if (is_of(row) && describes(row, "** End baseline **")) end = row;

  const int stop = !no_baseline && end < sel ? end : sel;
  std::vector<std::string> items;
  for (int row = start - 1; row >= 1 && row >= stop; --row) {
    if (!is_of(row)) continue;
    const std::string code = view.Text(row, admin::kColCode), text = view.Text(row, admin::kColWhole);
    if (code == "A") items.push_back(text);
    if (code != "R") continue;
    const auto first = std::find(items.begin(), items.end(), text);
    if (first != items.end()) items.erase(first);
  }
  if (items.empty()) items.emplace_back("**Empty Array**");
  return items;
}

}  // namespace zendrix::testing
