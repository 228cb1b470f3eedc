#include "admin/monitor_rows.h"

#include "admin/event_rows.h"
#include "core/letter_case.h"

namespace zendrix::admin {

void MonitorRows::CatchUp(const EventRows& rows) {
  if (rows_ == rows.size()) return;
  while (by_source_.size() < rows.source_count()) {
    const RowSource source = rows.source(static_cast<std::uint32_t>(by_source_.size()));
    const store::TextId monitor = names_.Intern(core::UpperCase(rows.pool().Text(source.monitor)));
    if (monitor >= rows_of_.size()) rows_of_.resize(names_.size());
    by_source_.push_back(monitor);
  }
  // All the room first, so that no row is listed when there is none for another.
  std::vector<std::uint32_t> more(rows_of_.size());
  for (std::uint32_t row = rows_; row < rows.size(); ++row) ++more[by_source_[rows.row(row).source]];
  for (std::size_t i = 0; i < more.size(); ++i) {
    const std::size_t wanted = rows_of_[i].size() + more[i];
    if (wanted > rows_of_[i].capacity()) rows_of_[i].reserve(rows_ == 0 ? wanted : wanted + wanted / 2);
  }
  for (; rows_ < rows.size(); ++rows_) rows_of_[by_source_[rows.row(rows_).source]].push_back(rows_);
}

std::span<const std::uint32_t> MonitorRows::Find(std::string_view monitor) const {
  const store::TextId number = names_.Lookup(core::UpperCase(monitor));
  if (number == store::kNoText || number >= rows_of_.size()) return {};
  return rows_of_[number];
}

}  // namespace zendrix::admin
