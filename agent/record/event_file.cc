#include "agent/record/event_file.h"

#include <algorithm>
#include <utility>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

// The slowest reader looks every five seconds.
constexpr std::int64_t kReadersLookMs = 6000;

// Nothing for a file that holds no whole line, such as one whose first line a kill cut. Only lines of the
// Home form have a "|", and only those of the other a code of one letter for their fourth field.
std::optional<Form> FormOf(std::string_view bytes) {
  if (bytes.find('|') != std::string_view::npos) return Form::kHome;
  for (const std::string_view line : SplitLines(bytes)) {
    const auto fields = SplitFields(line, ',');
    if (fields.size() >= 5 && fields[3].size() == 1) return Form::kAdmin;
  }
  return std::nullopt;
}

// Numbers that the console uses up for the lines. A name never holds a "*" (CleanName), so each one parts two
// rows, and a line of several rows uses up one number more.
std::size_t RowsOf(std::string_view bytes, Form form) {
  std::size_t rows = 0;
  for (const std::string_view line : SplitLines(bytes)) {
    const auto parts = form == Form::kHome ? std::count(line.begin(), line.end(), '*') : 0;
    rows += 1 + static_cast<std::size_t>(parts) + (parts > 0 ? 1 : 0);
  }
  return rows;
}

// The second of the last line that has one. A number without a comma behind it may be cut.
std::int64_t LastSecond(std::string_view bytes) {
  const auto lines = SplitLines(bytes);
  for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
    const std::size_t comma = line->find(',');
    std::uint64_t second = 0;
    if (comma == std::string_view::npos) continue;
    if (ReadNumber(line->substr(0, comma), second) && second < (1ULL << 31U)) {
      return static_cast<std::int64_t>(second);
    }
  }
  return 0;
}

}  // namespace

EventFile::EventFile(platform::Files& files, platform::Clock& clock, std::string path, Form form)
    : files_(files), clock_(clock), path_(std::move(path)), form_(form) {}

platform::Status EventFile::Open() {
  if (!files_.Exists(path_)) return platform::Done{};
  const auto size = files_.Size(path_);
  if (!size) return size.error();
  size_ = size.value();
  if (IsFull()) return platform::Done{};  // it will be put aside unread
  const auto bytes = files_.ReadAll(path_);
  if (!bytes) return bytes.error();
  if (FormOf(bytes.value()).value_or(form_) != form_) {
    return platform::Error{platform::ErrorKind::kOther, "it holds lines of the other form"};
  }
  TakeUp(bytes.value());
  return platform::Done{};
}

void EventFile::TakeUp(std::string_view bytes) {
  size_ = static_cast<std::int64_t>(bytes.size());
  rows_ = RowsOf(bytes, form_);
  line_open_ = !bytes.empty() && bytes.back() != '\n';
  last_second_ = LastSecond(bytes);
  identity_ = IdentityNow();
}

std::int64_t EventFile::NextSecond(std::int64_t more) {
  first_second_ = std::max(clock_.NowUtc() - more, last_second_ + 1);
  return first_second_;
}

platform::Status EventFile::Append(const BatchText& batch) {
  // A line that was left open must not swallow the first new one. Its end begins with a comma, because the
  // console may have read the half line already and cannot bear a new part whose first line has none.
  const std::string bytes = (line_open_ ? ",\r\n" : "") + batch.bytes;
  auto status = files_.Append(path_, bytes);
  if (!status) {
    NotePart(bytes);
    return status;
  }
  if (size_ == 0) identity_ = IdentityNow();
  line_open_ = false;
  size_ += static_cast<std::int64_t>(bytes.size());
  rows_ += batch.rows;
  EndAt(batch.last_second);
  return status;
}

void EventFile::EndAt(std::int64_t second) {
  last_second_ = second;
  const std::int64_t now = clock_.NowUtc();
  const bool clock_was_put_back = first_second_ > now + kMostLead;
  const std::int64_t seconds =
      clock_was_put_back ? last_second_ - first_second_ + 1 : last_second_ + 1 - kMostLead - now;
  wait_until_ms_ = clock_.MonotonicMs() + std::max<std::int64_t>(seconds, 0) * 1000;
}

// A full disk takes a part of a batch. The batch will be told again, with later seconds: a reader may have
// the part already. Its last line has to be ended first.
void EventFile::NotePart(std::string_view bytes) {
  const auto size = files_.Size(path_);
  if (!size || size.value() <= size_) return;
  const std::string_view part = bytes.substr(0, static_cast<std::size_t>(size.value() - size_));
  if (size_ == 0) identity_ = IdentityNow();
  size_ = size.value();
  rows_ += RowsOf(part, form_);
  line_open_ = true;
  if (const std::int64_t second = LastSecond(part); second > last_second_) EndAt(second);
}

bool EventFile::WasReplaced() const {
  if (size_ == 0) return false;
  const auto size = files_.Size(path_);
  if (!size || size.value() < size_) return true;
  const auto identity = IdentityNow();
  return identity && identity_ && *identity != *identity_;
}

std::optional<platform::FileIdentity> EventFile::IdentityNow() const {
  const auto stream = files_.Open(path_);
  return stream ? stream.value()->Identity() : std::nullopt;
}

platform::Result<std::string> EventFile::PutAside() {
  const std::string stem = path_.substr(0, path_.rfind('.'));
  const bool is_ahead = IsFarAhead();
  std::int64_t second = is_ahead ? clock_.NowUtc() : std::max(last_second_, clock_.NowUtc());
  const auto name = [&] { return stem + "-" + std::to_string(second) + ".kvl"; };
  while (files_.Exists(name())) ++second;
  const auto status = files_.Rename(path_, name());
  if (!status) return status.error();
  Forget();
  if (is_ahead) {
    last_second_ = 0;
    // A reader knows a new file by its being shorter, and the new one may soon be as long as the old one was.
    // So it is left empty for as long as a reader may need to look at it.
    static_cast<void>(files_.Append(path_, ""));
    wait_until_ms_ = clock_.MonotonicMs() + kReadersLookMs;
  }
  return name();
}

std::size_t EventFile::DropOldest() {
  const std::size_t slash = path_.rfind('/');
  const std::string folder = path_.substr(0, slash);
  const std::string begin = path_.substr(slash + 1, path_.rfind('.') - slash - 1) + "-";
  const auto names = files_.List(folder);
  if (!names) return 0;
  std::vector<std::uint64_t> seconds;
  for (const std::string_view name : names.value()) {
    constexpr std::string_view kEnd = ".kvl";
    std::uint64_t second = 0;
    if (!name.starts_with(begin) || !name.ends_with(kEnd) || name.size() < begin.size() + kEnd.size())
      continue;
    const auto digits = name.substr(begin.size(), name.size() - begin.size() - kEnd.size());
    // Only names that are given here.
    if (ReadNumber(digits, second) && std::to_string(second) == digits) seconds.push_back(second);
  }
  if (seconds.size() <= kMostAside) return 0;
  std::sort(seconds.begin(), seconds.end());
  seconds.resize(seconds.size() - kMostAside);
  std::size_t count = 0;
  for (const std::uint64_t second : seconds) {
    if (files_.Remove(platform::JoinPath(folder, begin + std::to_string(second) + ".kvl"))) ++count;
  }
  return count;
}

void EventFile::Forget() {
  size_ = 0;
  rows_ = 0;
  line_open_ = false;
  identity_.reset();
}

}  // namespace zendrix::agent
