// The description's pattern is what a user types, and descriptions are what whoever the console is meant to
// catch writes. An input is a pattern, a byte 1F and descriptions with a byte 1E between: each passes the
// filter when it is like the pattern, asked by itself and among rows that share their texts.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "admin/prepared_query.h"
#include "core/letter_case.h"
#include "core/like_pattern.h"
#include "core/text_rules.h"
#include "platform/memory/memory_family.h"
#include "support/grid_rows.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zendrix;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(input.find('\x1F'), input.size());
  const std::string_view descriptions = input.substr(std::min(end + 1, input.size()));
  const auto width = [](std::string_view text) { return static_cast<int>(text.size()); };
  platform::MemoryFamily family;
  admin::EventRows rows(family, {width, width, 1});
  for (const std::string_view whole : core::Split(descriptions, "\x1E"))
    for (int twice = 0; twice < 2; ++twice) testing::Append(rows, {.event_id = 1, .whole = whole});
  admin::FilterCriteria criteria;
  criteria.description = input.substr(0, end);
  const admin::FilterQuery query(criteria, {}, 2026);
  admin::PreparedQuery prepared(query, rows);
  const std::string pattern = "*" + core::UpperCase(criteria.description) + "*";
  for (std::uint32_t row = 0; row < rows.size(); ++row) {
    const std::string_view whole = rows.Whole(row);
    const bool like = criteria.description.empty() || core::Like(core::UpperCase(whole), pattern);
    if (query.CheckQuery({"", "", "", "", whole}) != like || prepared.Passes(row) != like) std::abort();
  }
  return 0;
}
