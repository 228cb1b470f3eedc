#include "support/plain_reader.h"

#include <algorithm>

#include "core/letter_case.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"

namespace zendrix::test {
namespace {

using Texts = std::vector<std::string>;

Texts SplitTexts(std::string_view text, std::string_view separator) {
  const auto pieces = core::Split(text, separator);
  return {pieces.begin(), pieces.end()};
}

// All lines of a file, without their ends.
Texts LinesOf(std::string_view file) {
  Texts lines;
  while (!file.empty()) {
    const auto feed = file.find('\n');
    std::string line(file.substr(0, feed));
    if (feed != std::string_view::npos && line.ends_with('\r')) line.pop_back();
    lines.push_back(std::move(line));
    file = feed == std::string_view::npos ? std::string_view() : file.substr(feed + 1);
  }
  return lines;
}

Texts FieldsOf(const std::string& line) {
  return SplitTexts(core::Trim(core::CleanLine(line)), "|");
}

bool IsFull(const Texts& fields) {
  return fields.size() >= 7;
}

std::string DateKey(const std::string& line) {
  const auto comma = line.find(',');
  if (comma == std::string::npos) core::Raise(core::kInvalidProcedureCall);
  return line.substr(0, comma);
}

void AddUnique(std::vector<std::pair<std::string, std::string>>& list, const std::string& key,
               const std::string& item) {
  const auto same = [&](const auto& entry) { return core::EqualNoCase(entry.first, key); };
  if (std::ranges::none_of(list, same)) list.emplace_back(key, item);
}

std::string Expand(const std::string& text) {
  Texts out;
  for (const std::string& item : SplitTexts(text, ";")) {
    const auto equals = item.find('=');
    const Texts values = SplitTexts(item, " * ");
    if (equals == std::string::npos || values.size() < 2) {
      out.push_back(item);
      continue;
    }
    for (const std::string& value : values) {
      out.push_back(value.find('=') != std::string::npos ? value : item.substr(0, equals + 1) + value);
    }
  }
  std::string joined;
  for (const std::string& item : out) joined += (&item == &out.front() ? "" : ";") + item;
  return joined;
}

}  // namespace

void PlainReader::Load(std::string_view file) {
  rows.clear();
  columns = 11;
  monitors.clear();
  hosts.clear();
  originals.clear();
  last_line = 0;
  last_date.clear();
  last_size = static_cast<std::int64_t>(file.size());
  if (file.empty()) {
    reloaded = true;
    return;
  }
  const Texts lines = LinesOf(file);
  std::size_t at = 0;
  std::int64_t counter = 1;
  std::int64_t running = static_cast<std::int64_t>(lines[0].size()) + 2;
  while (!IsFull(FieldsOf(lines[at])) && at + 1 < lines.size()) {
    ++counter;
    running += static_cast<std::int64_t>(lines[++at].size()) + 2;
  }
  if (!IsFull(FieldsOf(lines[0])) && at + 1 == lines.size()) return;
  const Texts first = FieldsOf(lines[at]);
  columns = first.size() - 1 + 3 + 2;
  Finish(FillRow(first, counter, true), first, first[3]);
  Offer(first, false);
  for (++at; at < lines.size(); ++at) {
    ++counter;
    running += static_cast<std::int64_t>(lines[at].size()) + 2;
    const Texts fields = FieldsOf(lines[at]);
    if (IsFull(fields)) AddRows(fields, counter, false);
    if (counter % 50 != 0) continue;
    if (running * 100 > 2147483647) core::Raise(core::kOverflow);
    progress.push_back(
        std::min(100, static_cast<int>(static_cast<double>(running * 100) / static_cast<double>(last_size))));
  }
  last_line = counter;
  reloaded = true;
}

bool PlainReader::Follow(std::string_view file) {
  reloaded = false;
  const auto size = static_cast<std::int64_t>(file.size());
  if (size == last_size) return false;
  if (size < last_size) {
    reloaded = true;
    bookmark.reset();
    Load(file);
    return true;
  }
  const Texts lines = LinesOf(file.substr(static_cast<std::size_t>(last_size)));
  std::int64_t counter = last_line;
  std::size_t at = 0;
  std::string key = DateKey(lines[0]);
  while (key <= last_date && at + 1 < lines.size()) key = DateKey(lines[++at]);
  if (!rows.empty()) bookmark = rows.size() - 1;
  if (key <= last_date) ++at;
  for (; at < lines.size(); ++at) {
    ++counter;
    const Texts fields = FieldsOf(lines[at]);
    if (IsFull(fields)) AddRows(fields, counter, true);
  }
  last_size = size;
  last_line = counter;
  return true;
}

Texts PlainReader::FillRow(const Texts& fields, std::int64_t counter, bool first) {
  const auto& locale = state_.seams.locale.Current();
  auto& family = state_.seams.family;
  Texts row(11);
  row[0] = std::to_string(counter);
  const Texts stamp = SplitTexts(fields[0], ",");
  if (stamp.size() != 4) ++logged;
  if (stamp.empty()) core::Raise(core::kSubscriptOutOfRange);
  if (core::IsNumeric(stamp[0], locale)) {
    row[1] = stamp[0].substr(0, 50);
    const int order = core::CInt(core::GetLocaleValue(33, state_.seams.locale), locale);
    row[2] = core::DisplayTime(core::CLng(stamp[0], locale), order, family, locale).substr(0, 50);
  } else {
    row[1] = core::DateToUTC(core::Now(state_.seams.clock, family), family).substr(0, 50);
    row[2] = first ? stamp[0] : stamp[0].substr(0, 50);
  }
  row[3] = stamp.size() == 4 ? stamp[1].substr(0, 50) : "Hostname N/A";
  row[4] = stamp.size() == 4 ? stamp[2].substr(0, 50) : "ThreadID N/A";
  row[5] = stamp.size() == 4 ? stamp[3].substr(0, 50) : "Monitor N/A";
  last_date = row[1];
  row[6] = core::Format16(core::Val(fields[1].substr(0, 50)), locale).substr(0, 50);
  row[7] = core::Format16(core::Val(fields[2].substr(0, 50)), locale).substr(0, 50);
  row[9] = fields[4].substr(0, 1536);
  row[10] = fields[5].substr(0, 100);
  return row;
}

void PlainReader::Finish(Texts row, const Texts& fields, std::string description) {
  row[8] = description.substr(0, 1536);
  for (std::size_t i = 11; i < columns && i - 4 < fields.size(); ++i)
    row.push_back(fields[i - 4].substr(0, 1536));
  while (!row.empty() && row.back().empty()) row.pop_back();
  rows.push_back(std::move(row));
}

void PlainReader::AddRows(const Texts& fields, std::int64_t& counter, bool incremental) {
  const Texts parts = SplitTexts(fields[3], " * ");
  for (const std::string& part : parts) {
    Texts row = FillRow(fields, counter, false);
    if (row[5] == "Aggregation") {
      Finish(std::move(row), fields, Expand(fields[3]));
      break;
    }
    Finish(std::move(row), fields, part);
    if (parts.size() > 1) ++counter;
  }
  Offer(fields, incremental);
}

void PlainReader::Offer(const Texts& fields, bool incremental) {
  const Texts stamp = SplitTexts(fields[0], ",");
  if (stamp.size() != 4) return;
  AddUnique(hosts, stamp[1], stamp[1]);
  AddUnique(monitors, stamp[3], incremental ? stamp[2] : stamp[3]);
  AddUnique(originals, fields[1], fields[1]);
}

}  // namespace zendrix::test
