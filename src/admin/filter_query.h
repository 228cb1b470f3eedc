// What the filter lets through: up to six criteria, all of which a row has to meet, texts without regard to
// case. Moments are seconds of the clock on the wall since 1970-01-01 00:00; a row's own is read from its
// shown time. A row whose time is no date meets no criterion of time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "admin/text_search.h"
#include "platform/locale.h"

namespace zendrix::admin {

struct FilterCriteria {
  std::optional<std::string> host = {};
  // Empty: no criterion.
  std::string monitor = {}, change = {};
  // A pattern of the Like operator, which the description holds anywhere.
  std::string description = {};
  std::optional<std::int64_t> from = {}, to = {};

  bool Any() const;
  // A period with one end only is the moment of that end.
  void CompleteDates();
  bool operator==(const FilterCriteria&) const = default;
};

// Five cells of a row; the monitor without the room for its picture.
struct RowValues {
  std::string_view date, host, monitor, change, description;
};

// Whether a description matches "*pattern*" in upper case.
class DescriptionPattern {
 public:
  explicit DescriptionPattern(std::string_view pattern);
  bool Matches(std::string_view description) const;

 private:
  // Where only "*" has a meaning: what stands between, in this order. Otherwise the longest text that has to
  // be there, if any.
  std::vector<TextSearch> pieces_;
  // Unless only "*" has one: the whole pattern in upper case.
  std::string pattern_;
};

class FilterQuery {
 public:
  // Dates without a year are of `current_year`.
  FilterQuery(FilterCriteria criteria, const platform::LocaleInfo& locale, int current_year);

  bool CheckQuery(const RowValues& row) const;

  // The same in parts: a row passes when each of these does.
  bool PassesSource(std::string_view host, std::string_view monitor, std::string_view change) const;
  bool PassesDescription(std::string_view description) const;
  bool PassesDate(std::string_view date) const { return !HasDates() || PassesMoment(ReadMoment(date)); }
  bool HasDescription() const { return pattern_.has_value(); }
  bool HasDates() const { return criteria_.from.has_value(); }
  bool PassesMoment(std::optional<std::int64_t> moment) const;
  std::optional<std::int64_t> ReadMoment(std::string_view date) const;

 private:
  FilterCriteria criteria_;
  std::optional<DescriptionPattern> pattern_;
  platform::LocaleInfo locale_;
  int current_year_;
};

}  // namespace zendrix::admin
