#include "admin/event_rows.h"

#include <cstring>
#include <numeric>
#include <utility>

#include "admin/text_ranks.h"
#include "core/run_time_error.h"

namespace zendrix::admin {

namespace {
// What a source takes beside the rows: its texts stand in the lists of the window, as keys and as items, with
// the load that meets it and with the rows of its monitor.
constexpr std::size_t kCopiesOfSource = 5;
constexpr std::size_t kBytesOfSource = 512;
}  // namespace

EventRows::EventRows(platform::FamilyLibraries& family, TextMetrics metrics, RowCapacity capacity)
    : capacity_(capacity), texts_(family, std::move(metrics)) {}

void EventRows::Clear() {
  // All new parts first: from here on nothing can fail.
  store::TextPool pool, sources;
  MonitorRows monitors;
  pool_ = std::move(pool);
  sources_ = std::move(sources);
  listed_bytes_ = 0;
  rows_ = {};
  is_description_.clear();
  late_descriptions_.clear();
  description_count_ = 0;
  texts_.Clear();
  monitors_ = std::move(monitors);
  for (KeptRanks& ranks : ranks_) ranks = {};
}

std::uint32_t EventRows::AddSource(std::string_view host, std::string_view monitor, std::string_view code) {
  if (monitor.starts_with(kPictureRoom)) monitor.remove_prefix(kPictureRoom.size());
  const std::uint32_t known = source_count();
  const std::uint32_t source =
      KeepSource({pool_.Intern(host), pool_.Intern(monitor), pool_.Intern(code), store::kNoText});
  if (source == known)
    listed_bytes_ += kCopiesOfSource * (host.size() + monitor.size() + code.size()) + kBytesOfSource;
  return source;
}

std::uint32_t EventRows::AddSourceWithTime(std::uint32_t source, std::string_view time) {
  RowSource with_time = this->source(source);
  with_time.time = pool_.Intern(time);
  return KeepSource(with_time);
}

std::uint32_t EventRows::KeepSource(const RowSource& source) {
  char bytes[sizeof source];
  std::memcpy(bytes, &source, sizeof source);
  return sources_.Intern(std::string_view(bytes, sizeof bytes)) - 1;
}

RowSource EventRows::source(std::uint32_t source) const {
  RowSource found;
  std::memcpy(&found, sources_.Text(source + 1).data(), sizeof found);
  return found;
}

store::TextId EventRows::AddDescription(const store::TextPool::Hashed& text) {
  const store::TextId next = pool_.size();
  const store::TextId id = pool_.Intern(text);
  if (id < is_description_.size() && is_description_[id]) return id;
  if (id >= is_description_.size()) is_description_.resize(pool_.size());
  if (id < next) late_descriptions_.push_back({next, id});
  is_description_[id] = true;
  ++description_count_;
  return id;
}

std::vector<store::TextId> EventRows::DistinctDescriptions() const {
  std::vector<bool> in_order = is_description_;
  for (const LateDescription& late : late_descriptions_) in_order[late.text] = false;
  std::vector<store::TextId> texts;
  texts.reserve(description_count_);
  auto late = late_descriptions_.begin();
  for (store::TextId id = 0; id < in_order.size(); ++id) {
    for (; late != late_descriptions_.end() && late->before <= id; ++late) texts.push_back(late->text);
    if (in_order[id]) texts.push_back(id);
  }
  for (; late != late_descriptions_.end(); ++late) texts.push_back(late->text);
  return texts;
}

void EventRows::Append(const EventRow& row) {
  if (rows_.size() >= capacity_.rows) core::Raise(core::kOutOfMemory);
  CheckBytes();
  texts_.BeginRow(size());
  rows_.push_back(row);
}

void EventRows::CheckBytes() const {
  if (bytes() >= capacity_.bytes) core::Raise(core::kOutOfMemory);
}

store::CUList EventRows::Descriptions() const {
  store::CUList list;
  for (const store::TextId id : DistinctDescriptions()) {
    const std::string_view text = pool_.Text(id);
    list.SetItemData(text, text);
  }
  return list;
}

std::string EventRows::Time(std::uint32_t row) const {
  const store::TextId time = SourceOf(row).time;
  return time == store::kNoText ? texts_.Time(row, rows_[row].time_key) : std::string(pool_.Text(time));
}

std::string EventRows::Fitted(std::uint32_t row) const {
  return texts_.Fitted(row, rows_[row].whole, Whole(row));
}

std::span<const std::uint32_t> EventRows::RowsOfMonitor(std::string_view monitor) const {
  monitors_.CatchUp(*this);
  return monitors_.Find(monitor);
}

store::TextId EventRows::TextOf(Key key, const RowSource& source) const {
  return key == Key::kHost ? source.host : key == Key::kMonitor ? source.monitor : source.code;
}

std::string_view EventRows::TextOf(Key key, std::uint32_t row) const {
  return pool_.Text(key == Key::kWhole ? rows_[row].whole : TextOf(key, SourceOf(row)));
}

EventRows::Ranks EventRows::RanksOf(Key key) const {
  KeptRanks& kept = ranks_[static_cast<std::size_t>(key)];
  const bool by_source = key != Key::kWhole;
  const std::uint32_t count = by_source ? source_count() : description_count();
  if (kept.count == count) return {kept.of, by_source};
  std::vector<store::TextId> texts;
  if (by_source) {
    texts.resize(count);
    for (std::uint32_t i = 0; i < count; ++i) texts[i] = TextOf(key, source(i));
  } else {
    texts = DistinctDescriptions();
  }
  std::vector<std::uint32_t> ranks = RanksNoCase(pool_, texts);
  if (by_source) {
    kept.of = std::move(ranks);
  } else {
    std::vector<std::uint32_t> by_text(pool_.size());
    for (std::uint32_t i = 0; i < count; ++i) by_text[texts[i]] = ranks[i];
    kept.of = std::move(by_text);
  }
  kept.count = count;
  return {kept.of, by_source};
}

}  // namespace zendrix::admin
