#include "support/reader_match.h"

namespace zendrix::test {
namespace {

using List = std::vector<std::pair<std::string, std::string>>;

List PairsOf(const store::CUList& list) {
  List pairs;
  for (const auto& entry : list.ColList()) pairs.emplace_back(entry.key, entry.item);
  return pairs;
}

std::vector<std::string> RowOf(const store::EventTable& table, store::Bookmark number, std::size_t wanted) {
  std::vector<std::string> row = {std::to_string(table.ID(number))};
  for (int column = 1; column < table.ColumnCount(); ++column) row.emplace_back(table.Text(number, column));
  while (row.size() > wanted && row.back().empty()) row.pop_back();
  return row;
}

}  // namespace

std::string Difference(const store::CMkvlf& reader, const PlainReader& plain) {
  if (!reader.EventTable) return "no table";
  const store::EventTable& table = *reader.EventTable;
  if (table.ColumnCount() != static_cast<int>(plain.columns)) return "number of columns";
  if (table.RowCount() != plain.rows.size()) return "number of rows";
  for (store::Bookmark i = 0; i < table.RowCount(); ++i) {
    if (RowOf(table, i, plain.rows[i].size()) != plain.rows[i]) return "row " + std::to_string(i);
  }
  if (reader.LastLineNumber != plain.last_line) return "LastLineNumber";
  if (reader.LastFileSize != plain.last_size) return "LastFileSize";
  if (reader.LastDateUTC != plain.last_date) return "LastDateUTC";
  if (reader.ReloadedFlag != plain.reloaded) return "ReloadedFlag";
  if (reader.LastBookmark.has_value() != plain.bookmark.has_value()) return "LastBookmark";
  if (plain.bookmark && *reader.LastBookmark != *plain.bookmark) return "LastBookmark";
  if (PairsOf(reader.MonitorList) != plain.monitors) return "MonitorList";
  if (PairsOf(reader.HostList) != plain.hosts) return "HostList";
  if (PairsOf(reader.OriginalList) != plain.originals) return "OriginalList";
  return {};
}

}  // namespace zendrix::test
