#include "admin/event_grid.h"

#include <algorithm>
#include <numeric>

#include "alerts/monitor_catalogue.h"
#include "core/letter_case.h"
#include "core/run_time_error.h"

namespace zendrix::admin {

EventGrid::EventGrid(std::string name, std::size_t capacity)
    : Grid(std::move(name)), capacity_(capacity), pool_(std::make_unique<store::TextPool>()) {}

void EventGrid::Clear() {
  order_.clear();
  for (auto* numbers : {&event_ids_, &time_keys_}) numbers->clear();
  for (auto* texts : {&times_, &hosts_, &monitors_, &codes_, &wholes_, &fitteds_}) texts->clear();
  pool_ = std::make_unique<store::TextPool>();
  TellCleared();
}

void EventGrid::InsertTop(const GridRow& row) {
  if (order_.size() >= capacity_) core::Raise(core::kOutOfMemory);
  const auto place = static_cast<std::uint32_t>(event_ids_.size());
  event_ids_.push_back(row.event_id);
  time_keys_.push_back(row.time_key);
  times_.push_back(pool_->Intern(row.time));
  hosts_.push_back(pool_->Intern(row.host));
  monitors_.push_back(pool_->Intern(row.monitor));
  codes_.push_back(pool_->Intern(row.code));
  wholes_.push_back(pool_->Intern(row.whole));
  fitteds_.push_back(pool_->Intern(row.fitted));
  order_.push_back(place);
  TellRowsAdded();
}

const std::vector<EventGrid::Id>& EventGrid::TextsOf(int col) const {
  switch (col) {
    case kColDateTime:
      return times_;
    case kColHostname:
      return hosts_;
    case kColMonitor:
      return monitors_;
    case kColCode:
      return codes_;
    case kColWhole:
      return wholes_;
    default:
      return fitteds_;
  }
}

std::string EventGrid::Text(int row, int col) const {
  const std::size_t at = At(row);
  if (col == kColEventID) return std::to_string(event_ids_[at]);
  if (col == kColTimeKey) return std::to_string(time_keys_[at]);
  if (col == kColChange) return {};
  const std::string_view text = pool_->Text(TextsOf(col)[at]);
  return col == kColMonitor ? std::string(kPictureRoom).append(text) : std::string(text);
}

std::size_t EventGrid::TextLength(int row, int col) const {
  if (col == kColEventID || col == kColTimeKey || col == kColChange) return Text(row, col).size();
  const std::size_t size = pool_->Text(TextsOf(col)[At(row)]).size();
  return col == kColMonitor ? size + kPictureRoom.size() : size;
}

int EventGrid::Picture(int row, int col) const {
  if (col == kColMonitor) return alerts::GridPicture(kColMonitor, Monitor(row));
  if (col == kColChange) return alerts::GridPicture(kColChange, pool_->Text(codes_[At(row)]));
  return 0;
}

std::string EventGrid::Tip(int row, int col) const {
  if (col == kColMonitor) return std::string(Monitor(row));
  if (col == kColDescription) return std::string(WholeDescription(row));
  if (col != kColChange) return Text(row, col);
  const std::string_view code = pool_->Text(codes_[At(row)]);
  if (code == "A") return "Added";
  if (code == "R") return "Removed";
  return code == "N" ? "Notable" : std::string(code);
}

std::string_view EventGrid::Monitor(int row) const {
  return pool_->Text(monitors_[At(row)]);
}

void EventGrid::SortBy(const std::function<bool(std::uint32_t, std::uint32_t)>& before) {
  std::reverse(order_.begin(), order_.end());  // as shown, from row 1 down
  std::stable_sort(order_.begin(), order_.end(), before);
  std::reverse(order_.begin(), order_.end());
  TellRowsSorted();
}

void EventGrid::SortByText(int col, bool ascending) {
  const std::vector<Id>& texts = TextsOf(col);
  // Each distinct text gets its place once, so that comparing two rows is comparing two numbers.
  std::vector<Id> ids = texts;
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  std::vector<std::pair<std::string, Id>> names;
  names.reserve(ids.size());
  for (const Id id : ids) names.emplace_back(core::UpperCase(pool_->Text(id)), id);
  std::sort(names.begin(), names.end());
  std::vector<std::uint32_t> rank(pool_->size());
  std::uint32_t place = 0;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0 && names[i].first != names[i - 1].first) ++place;
    rank[names[i].second] = place;
  }
  SortBy([&](std::uint32_t one, std::uint32_t other) {
    const std::uint32_t left = rank[texts[one]], right = rank[texts[other]];
    return ascending ? left < right : right < left;
  });
}

void EventGrid::SortByTimeKey(bool ascending) {
  SortBy([&](std::uint32_t one, std::uint32_t other) {
    return ascending ? time_keys_[one] < time_keys_[other] : time_keys_[other] < time_keys_[one];
  });
}

}  // namespace zendrix::admin
