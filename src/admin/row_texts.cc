#include "admin/row_texts.h"

#include <utility>

#include "core/fit_text.h"

namespace zendrix::admin {

namespace {
// A file name that does not fit stays whole, whatever its length.
constexpr std::size_t kLongestKept = 1000;
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

std::optional<int> RowTexts::SecondShown(std::uint32_t row, std::int32_t time_key) const {
  Formatter* const held = times_.Of(row);
  return held == nullptr ? std::nullopt : held->formatter.SecondShown(time_key);
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
