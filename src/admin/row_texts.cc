#include "admin/row_texts.h"

#include <initializer_list>
#include <utility>

#include "core/fit_text.h"

namespace zendrix::admin {

namespace {
// A file name that does not fit stays whole, whatever its length.
constexpr std::size_t kLongestKept = 1000;

// Those of a picture with what can stand in it, names only where the picture has them; always those of a
// plain number and of a moment that cannot be read back.
void AddCharacters(std::bitset<256>& all, const platform::LocaleInfo& locale) {
  const auto add = [&](std::string_view text) {
    for (const char character : text) all[static_cast<unsigned char>(character)] = true;
  };
  add(locale.short_date);
  add(locale.time);
  const auto add_names = [&](const char* sign, std::initializer_list<std::string_view> names) {
    if ((locale.short_date + locale.time).find(sign) != std::string::npos)
      for (const std::string_view name : names) add(name);
  };
  for (std::size_t i = 0; i < locale.day_names.size(); ++i)
    add_names("ddd", {locale.day_names[i], locale.short_day_names[i]});
  for (std::size_t i = 0; i < locale.month_names.size(); ++i)
    add_names("MMM", {locale.month_names[i], locale.short_month_names[i]});
  add_names("t", {locale.am, locale.pm});
}
}  // namespace

RowTexts::RowTexts(platform::FamilyLibraries& family, TextMetrics metrics)
    : family_(family), metrics_(std::move(metrics)) {}

void RowTexts::BeginLoad(const LoadSettings& settings) {
  times_.Announce({settings.locale, settings.date_order});
  widths_.Announce(settings.description_width);
}

void RowTexts::BeginRow(std::uint32_t row) {
  times_.Begin(row, [&](const TimeSettings& value) { return std::make_unique<Formatter>(value, family_); });
  widths_.Begin(row, [](int value) { return std::make_unique<Width>(Width{value}); });
}

void RowTexts::Clear() {
  times_.Clear();
  widths_.Clear();
  newer_.clear();
  older_.clear();
}

std::string RowTexts::Time(std::uint32_t row, std::int32_t time_key) const {
  Formatter* const held = times_.Of(row);
  return held == nullptr ? std::to_string(time_key) : std::string(held->formatter.Format(time_key));
}

std::optional<core::MomentFormatter::Told> RowTexts::ToldAround(std::uint32_t row,
                                                                std::int32_t time_key) const {
  Formatter* const held = times_.Of(row);
  return held == nullptr ? std::nullopt : held->formatter.ToldAround(time_key);
}

std::bitset<256> RowTexts::TimeCharacters() const {
  std::bitset<256> all;
  for (const char character : std::string_view("0123456789-/: "))
    all[static_cast<unsigned char>(character)] = true;
  times_.ForEach([&](const Formatter& formatter) { AddCharacters(all, formatter.value.locale); });
  return all;
}

std::string RowTexts::Fitted(std::uint32_t row, store::TextId whole, std::string_view text) const {
  const std::size_t number = widths_.NumberOf(row);
  if (number == 0) return std::string(text);
  const std::uint64_t key = static_cast<std::uint64_t>(number) << 32 | whole;
  if (const auto found = newer_.find(key); found != newer_.end()) return found->second;
  std::string fitted;
  if (const auto found = older_.find(key); found != older_.end()) {
    fitted = found->second;
  } else {
    fitted = core::FitTextToWidth(text, widths_.Of(row)->value, metrics_.twips, metrics_.pixels,
                                  metrics_.twips_per_pixel);
  }
  if (fitted.size() > kLongestKept) return fitted;
  if (newer_.size() >= kKept / 2) {
    older_ = std::move(newer_);
    newer_.clear();
  }
  newer_.emplace(key, fitted);
  return fitted;
}

}  // namespace zendrix::admin
