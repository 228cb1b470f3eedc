#include "admin/filter_query.h"

#include <algorithm>
#include <utility>

#include "core/date_calendar.h"
#include "core/letter_case.h"
#include "core/like_pattern.h"
#include "core/text_rules.h"

namespace zendrix::admin {

bool FilterCriteria::Any() const {
  return host || !monitor.empty() || !change.empty() || !description.empty() || from || to;
}

void FilterCriteria::CompleteDates() {
  if (!to) to = from;
  if (!from) from = to;
}

namespace {

// The longest run of characters that stand for themselves.
std::string_view LongestText(std::string_view pattern) {
  std::string_view longest;
  while (!pattern.empty()) {
    const std::size_t end = std::min(pattern.find_first_of("?*#["), pattern.size());
    if (end > longest.size()) longest = pattern.substr(0, end);
    const bool list = end < pattern.size() && pattern[end] == '[';
    const std::size_t behind = list ? pattern.find(']', end) : end;
    pattern.remove_prefix(std::min(behind, pattern.size() - 1) + 1);
  }
  return longest;
}

}  // namespace

DescriptionPattern::DescriptionPattern(std::string_view pattern) {
  if (pattern.find_first_of("?#[") != std::string_view::npos) {
    pattern_ = "*" + core::UpperCase(pattern) + "*";
    if (const auto text = LongestText(pattern); !text.empty()) pieces_.emplace_back(text, false);
    return;
  }
  for (const std::string_view piece : core::Split(pattern, "*"))
    if (!piece.empty()) pieces_.emplace_back(piece, false);
}

// Each piece takes the first place that it finds behind the one before: no later place leaves more room.
bool DescriptionPattern::Matches(std::string_view description) const {
  std::size_t from = 0;
  for (const TextSearch& piece : pieces_) {
    from = piece.Find(description, from);
    if (from == TextSearch::kNowhere) return false;
    from += piece.size();
  }
  return pattern_.empty() || core::Like(core::UpperCase(description), pattern_);
}

FilterQuery::FilterQuery(FilterCriteria criteria, const platform::LocaleInfo& locale, int current_year)
    : criteria_(std::move(criteria)), locale_(locale), current_year_(current_year) {
  criteria_.CompleteDates();
  if (!criteria_.description.empty()) pattern_.emplace(criteria_.description);
}

bool FilterQuery::CheckQuery(const RowValues& row) const {
  return PassesSource(row.host, row.monitor, row.change) && PassesDescription(row.description) &&
         PassesDate(row.date);
}

bool FilterQuery::PassesSource(std::string_view host, std::string_view monitor,
                               std::string_view change) const {
  const auto meets = [](const std::string& wanted, std::string_view text) {
    return wanted.empty() || core::EqualNoCase(wanted, text);
  };
  return meets(criteria_.change, change) && meets(criteria_.monitor, monitor) &&
         (!criteria_.host || core::EqualNoCase(*criteria_.host, host));
}

bool FilterQuery::PassesDescription(std::string_view description) const {
  return !pattern_ || pattern_->Matches(description);
}

bool FilterQuery::PassesMoment(std::optional<std::int64_t> moment) const {
  return moment && *criteria_.from <= *moment && *moment <= *criteria_.to;
}

std::optional<std::int64_t> FilterQuery::ReadMoment(std::string_view date) const {
  const std::optional<core::Date> read = core::ReadDate(date, locale_, current_year_);
  if (!read) return std::nullopt;
  return core::WallSeconds(core::LocalTimeOf(*read));
}

}  // namespace zendrix::admin
