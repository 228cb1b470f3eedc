// The texts of rows that are made when they are asked for, in the form that their load would have given them:
// the time in the regional settings of the load, the description fitted to the width that its column had
// then. Fitted texts that were asked for lately are kept, a few thousand of them.
#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "admin/stretches.h"
#include "admin/text_metrics.h"
#include "core/moment_formatter.h"
#include "platform/family_libraries.h"
#include "platform/locale.h"
#include "store/text_pool.h"

namespace zendrix::admin {

// How a load shows its rows.
struct LoadSettings {
  platform::LocaleInfo locale;
  int date_order = 0;
  int description_width = 0;  // twips
};

class RowTexts {
 public:
  // At most so many fitted texts are kept.
  static constexpr std::size_t kKept = 4096;

  // `family` outlives this object.
  RowTexts(platform::FamilyLibraries& family, TextMetrics metrics);

  // For the rows to come.
  void BeginLoad(const LoadSettings& settings);
  // `row` is the next row, and it will come.
  void BeginRow(std::uint32_t row);
  void Clear();

  // The plain number where no load was begun.
  std::string Time(std::uint32_t row, std::int32_t time_key) const;
  // No shown time has any other character.
  std::bitset<256> TimeCharacters() const;
  // The whole text where no load was begun.
  std::string Fitted(std::uint32_t row, store::TextId whole, std::string_view text) const;
  // Rows of one number share their settings; for equal texts they show the same.
  // The time keys around one that tell their seconds, in the settings of the row.
  std::optional<core::MomentFormatter::Told> ToldAround(std::uint32_t row, std::int32_t time_key) const;
  std::size_t TimeSettingsOf(std::uint32_t row) const { return times_.NumberOf(row); }
  std::size_t WidthSettingsOf(std::uint32_t row) const { return widths_.NumberOf(row); }

 private:
  struct TimeSettings {
    platform::LocaleInfo locale;
    int date_order = 0;
    bool operator==(const TimeSettings&) const = default;
  };
  struct Formatter {
    Formatter(const TimeSettings& settings, platform::FamilyLibraries& family)
        : value(settings), formatter(value.locale, value.date_order, family) {}
    const TimeSettings value;  // the formatter refers to it
    core::MomentFormatter formatter;
  };
  struct Width {
    int value;
  };
  using Texts = std::unordered_map<std::uint64_t, std::string>;

  platform::FamilyLibraries& family_;
  TextMetrics metrics_;
  Stretches<TimeSettings, Formatter> times_;
  Stretches<int, Width> widths_;
  // The newer half and the older half of what is kept.
  mutable Texts newer_, older_;
};

}  // namespace zendrix::admin
