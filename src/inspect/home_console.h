// The Home console behind a command, started as the executable starts it, and the acts of its user.
#pragma once

#include <charconv>
#include <string>

#include "console/console.h"
#include "inspect/console.h"
#include "inspect/document.h"

namespace zendrix::inspect {

class HomeConsole {
 public:
  explicit HomeConsole(Console& console)
      : home_(console.state(), console.log(), [] { return admin::TextMetrics(); }) {
    // The alert list is the Home console's, whatever edition was asked for.
    console.state().ProductEdition = "Home";
    home_.Start("");
  }

  home::frmNewUI& form() { return *home_.home(); }
  alerts::ConsoleAlerts& alerts() { return home_.alerts(); }
  store::CMkvlf& gKvlF() { return home_.gKvlF(); }

  // The row with this ID; there must be one.
  store::Bookmark Row(const std::string& id) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(id.data(), id.data() + id.size(), number);
    const bool whole = error == std::errc() && end == id.data() + id.size();
    const auto& table = home_.gKvlF().EventTable;
    for (store::Bookmark row = 0; whole && table && row < table->RowCount(); ++row)
      if (table->ID(row) == number) return row;
    throw NoSuchThing("Row " + id + " not found.");
  }

  // Clicks on this row in the alert list, and returns its tag. A row that the list does not show is put
  // there.
  std::string Click(const std::string& id) {
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

 private:
  console::Console home_;
};

}  // namespace zendrix::inspect
