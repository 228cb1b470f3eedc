#include "inspect/home_console.h"

#include <charconv>

#include "inspect/document.h"

namespace zendrix::inspect {

HomeConsole::HomeConsole(Console& console)
    : home_(console.state(), console.log(), [] { return admin::TextMetrics(); }) {
  // The alert list is the Home console's, whatever edition was asked for.
  console.state().ProductEdition = "Home";
  home_.Start("");
}

store::Bookmark HomeConsole::Row(const std::string& id) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(id.data(), id.data() + id.size(), number);
  const bool whole = error == std::errc() && end == id.data() + id.size();
  const auto& table = home_.gKvlF().EventTable;
  for (store::Bookmark row = 0; whole && table && row < table->RowCount(); ++row)
    if (table->ID(row) == number) return row;
  throw NoSuchThing("Row " + id + " not found.");
}

std::string HomeConsole::Click(const std::string& id) {
  const store::Bookmark row = Row(id);
  const store::EventTable& table = *home_.gKvlF().EventTable;
  const std::string tag(table.Text(row, store::kDateUTC));
  auto& list = form().alerts.lvAlerts;
  const std::string key = "K" + std::to_string(table.ID(row));
  auto slot = list.Find(key);
  if (!slot) slot = list.InsertTop(key, std::string(table.Text(row, store::kDateTime)), 0, tag);
  list.Select(*slot);
  list.item_clicked.Raise(*slot);
  return tag;
}

}  // namespace zendrix::inspect
