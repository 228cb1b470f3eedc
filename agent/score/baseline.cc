#include "agent/score/baseline.h"

#include <algorithm>

#include "agent/score/digest.h"

namespace zendrix::agent {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::size_t kRowsAtOnce = 5000;  // of one transaction
constexpr std::size_t kMostWords = 20000;
constexpr std::size_t kKeyWidth = 4096;
constexpr std::int64_t kMostDays = 1 << 24;
constexpr std::int64_t kMostDaysSeen = 60000;
// A clock that is further ahead than this was set wrong, and would make everything old.
constexpr std::int64_t kLongestAbsence = 60;

std::uint64_t IdOf(Known kind, std::string_view key) {
  std::string text(1, static_cast<char>(kind));
  text.append(key);
  return ShortSumOf(text);
}

}  // namespace

Baseline::Baseline(Keeper& keeper, std::int64_t utc) : keeper_(keeper), generation_(keeper.generation()) {
  Load();
  Tick(utc);
}

void Baseline::Load() {
  Statement meta = keeper_.database().Prepare("SELECT name, value FROM meta WHERE name IN ('days', 'day')");
  while (meta.Step() == Statement::Outcome::kRow) {
    const std::int64_t number = std::clamp<std::int64_t>(meta.Number(1), 0, kMostDays);
    if (meta.Text(0) == "day") day_ = number;
    if (meta.Text(0) == "days") days_watched_ = static_cast<int>(number);
  }
  Statement rows = keeper_.database().Prepare(
      "SELECT id, kind, first_seen, last_day, days FROM known ORDER BY days DESC, last_day DESC");
  while (rows.Step() == Statement::Outcome::kRow) {
    const auto id = static_cast<std::uint64_t>(rows.Number(0));
    if (entries_.size() >= kMostEntries) {
      unsaved_.push_back(id);  // one that is no entry is deleted
      continue;
    }
    Entry entry;
    entry.kind = static_cast<Known>(rows.Number(1));
    entry.first_seen = rows.Number(2);
    entry.last_day = static_cast<std::int32_t>(std::clamp<std::int64_t>(rows.Number(3), 0, kMostDays));
    entry.days = static_cast<std::uint16_t>(std::clamp<std::int64_t>(rows.Number(4), 1, kMostDaysSeen));
    entries_.emplace(id, entry);
  }
}

void Baseline::Tick(std::int64_t utc) {
  now_ = utc;
  const std::int64_t day = utc / kSecondsPerDay;
  if (day == day_ && days_watched_ > 0) return;
  // A clock that was put back makes no new day.
  if (day > day_ || days_watched_ == 0) ++days_watched_;
  const std::int64_t last = day_;
  day_ = day;
  days_unsaved_ = true;
  if (day > last && day - last <= kLongestAbsence) Prune(last);
}

void Baseline::Prune(std::int64_t last_day) {
  std::vector<std::uint64_t> old;
  for (const auto& [id, entry] : entries_) {
    if (last_day - entry.last_day > kDaysKept) old.push_back(id);
  }
  for (const std::uint64_t id : old) Drop(id);
}

std::optional<int> Baseline::DaysBefore(Known kind, std::string_view key) const {
  const auto found = entries_.find(IdOf(kind, key));
  if (found == entries_.end()) return {};
  return DaysBefore(found->second);
}

std::optional<int> Baseline::See(Known kind, std::string_view key, const PackageOf& package) {
  const std::uint64_t id = IdOf(kind, key);
  auto found = entries_.find(id);
  if (found == entries_.end()) {
    if (entries_.size() >= kMostEntries) MakeRoom();
    Entry entry;
    entry.first_seen = now_;
    entry.last_day = static_cast<std::int32_t>(day_);
    entry.days = 1;
    entry.kind = kind;
    found = entries_.emplace(id, entry).first;
    if (words_.size() < kMostWords) words_[id] = {std::string(key.substr(0, kKeyWidth)), package};
    Touch(id, found->second);
    return {};
  }
  Entry& entry = found->second;
  const int days = DaysBefore(entry);
  if (entry.last_day == day_) return days;
  if (day_ > entry.last_day && entry.days < kMostDaysSeen) ++entry.days;
  entry.last_day = static_cast<std::int32_t>(day_);
  Touch(id, entry);
  return days;
}

void Baseline::Touch(std::uint64_t id, Entry& entry) {
  if (entry.unsaved) return;
  entry.unsaved = true;
  unsaved_.push_back(id);
}

// A tenth at a time: a host of names that come once each does not push out what is usual.
void Baseline::MakeRoom() {
  std::vector<std::pair<std::pair<int, std::int64_t>, std::uint64_t>> order;
  order.reserve(entries_.size());
  for (const auto& [id, entry] : entries_) order.push_back({{entry.days, entry.last_day}, id});
  const std::size_t count = std::max<std::size_t>(entries_.size() / 10, 1);
  std::nth_element(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(count - 1), order.end());
  for (std::size_t i = 0; i < count; ++i) Drop(order[i].second);
}

void Baseline::Drop(std::uint64_t id) {
  const auto found = entries_.find(id);
  if (found == entries_.end()) return;
  const bool listed = found->second.unsaved;
  entries_.erase(found);
  words_.erase(id);
  if (!listed) unsaved_.push_back(id);  // to be deleted in the file too
  // A file that cannot be written keeps what it has until it is read again.
  if (unsaved_.size() > 2 * kMostEntries)
    std::erase_if(unsaved_, [&](std::uint64_t left) { return !entries_.contains(left); });
}

bool Baseline::WriteSome(Database& database, std::size_t count) const {
  Statement put = database.Prepare(
      "INSERT INTO known (id, kind, key, first_seen, last_day, days, package, unchanged) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8) "
      "ON CONFLICT (id) DO UPDATE SET last_day = excluded.last_day, days = excluded.days");
  Statement drop = database.Prepare("DELETE FROM known WHERE id = ?1");
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t id = unsaved_[i];
    const auto found = entries_.find(id);
    if (found == entries_.end()) {
      if (!drop.Bind(1, static_cast<std::int64_t>(id)).Run()) return false;
      continue;
    }
    const Entry& entry = found->second;
    const auto words = words_.find(id);
    const Words text = words == words_.end() ? Words{} : words->second;
    put.Bind(1, static_cast<std::int64_t>(id)).Bind(2, static_cast<std::int64_t>(entry.kind));
    put.Bind(3, text.key).Bind(4, entry.first_seen).Bind(5, static_cast<std::int64_t>(entry.last_day));
    put.Bind(6, static_cast<std::int64_t>(entry.days)).Bind(7, text.package.name);
    put.Bind(8, static_cast<std::int64_t>(text.package.unchanged));
    if (!put.Run()) return false;
  }
  Statement meta = database.Prepare("INSERT OR REPLACE INTO meta (name, value) VALUES (?1, ?2)");
  return meta.Bind(1, std::string_view("days")).Bind(2, static_cast<std::int64_t>(days_watched_)).Run() &&
         meta.Bind(1, std::string_view("day")).Bind(2, day_).Run();
}

void Baseline::Save(std::int64_t utc, bool at_once) {
  if (unsaved_.empty() && !days_unsaved_) return;
  if (!at_once && utc == saved_at_) return;
  saved_at_ = utc;
  do {
    const std::size_t count = std::min(unsaved_.size(), kRowsAtOnce);
    const bool done = keeper_.Write([&](Database& database) { return WriteSome(database, count); }, utc);
    if (generation_ != keeper_.generation()) {
      generation_ = keeper_.generation();
      for (auto& [id, entry] : entries_) Touch(id, entry);
    }
    if (!done) return;
    days_unsaved_ = false;
    for (std::size_t i = 0; i < count; ++i) {
      const auto found = entries_.find(unsaved_[i]);
      if (found != entries_.end()) found->second.unsaved = false;
      words_.erase(unsaved_[i]);
    }
    unsaved_.erase(unsaved_.begin(), unsaved_.begin() + static_cast<std::ptrdiff_t>(count));
  } while (at_once && !unsaved_.empty());
}

}  // namespace zendrix::agent
