#include "mail/follower.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

namespace zendrix::mail {
namespace {

constexpr std::string_view kStem = "KorvessaMonitoring";
constexpr std::string_view kExtension = ".kvl";
constexpr std::size_t kBlock = 65536;
constexpr std::size_t kBefore = 32;

// Fewer bytes only at the end of the file.
platform::Result<std::string> ReadAt(platform::ReadStream& stream, std::int64_t offset, std::size_t size) {
  if (auto sought = stream.Seek(offset); !sought) return sought.error();
  std::string bytes(size, '\0');
  std::size_t filled = 0;
  while (filled < size) {
    const auto got = stream.Read(bytes.data() + filled, size - filled);
    if (!got) return got.error();
    if (got.value() == 0) break;
    filled += got.value();
  }
  bytes.resize(filled);
  return bytes;
}

void MoveOn(Position& position, std::string_view bytes) {
  position.offset += static_cast<std::int64_t>(bytes.size());
  position.before.append(bytes.substr(bytes.size() - std::min(bytes.size(), kBefore)));
  if (position.before.size() > kBefore) position.before.erase(0, position.before.size() - kBefore);
}

std::optional<std::uint64_t> SecondOfName(std::string_view name) {
  if (!name.starts_with(kStem) || !name.ends_with(kExtension)) return std::nullopt;
  name.remove_prefix(kStem.size());
  if (name.size() <= kExtension.size() || name.front() != '-') return std::nullopt;
  const std::string_view digits = name.substr(1, name.size() - 1 - kExtension.size());
  std::uint64_t second = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), second);
  if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) return std::nullopt;
  return second;
}

}  // namespace

Follower::Follower(platform::Files& files, std::string folder)
    : files_(files),
      folder_(std::move(folder)),
      path_(platform::JoinPath(folder_, std::string(kStem) + std::string(kExtension))) {}

platform::Result<Follower::Opened> Follower::Open(const std::string& path) {
  const auto size = files_.Size(path);
  if (!size) return size.error();
  auto stream = files_.Open(path);
  if (!stream) return stream.error();
  Opened opened;
  opened.size = size.value();
  opened.identity = stream.value()->Identity().value_or(platform::FileIdentity());
  opened.stream = std::move(stream.value());
  return opened;
}

platform::Result<Position> Follower::End() {
  if (!files_.Exists(path_)) return Position();
  auto opened = Open(path_);
  if (!opened) return opened.error();
  Position position;
  position.file = opened.value().identity;
  const std::int64_t begin = std::max<std::int64_t>(0, opened.value().size - std::int64_t{kBlock});
  const auto tail = ReadAt(*opened.value().stream, begin, kBlock);
  if (!tail) return tail.error();
  const auto last_end = tail.value().rfind('\n');
  // Without the end of a line in all that, the line is one that is passed over, or the file's first.
  const std::size_t taken = last_end != std::string::npos ? last_end + 1
                            : begin > 0                   ? tail.value().size()
                                                          : 0;
  position.offset = begin;
  position.mid_line = last_end == std::string::npos && begin > 0;
  MoveOn(position, std::string_view(tail.value()).substr(0, taken));
  return position;
}

Position Follower::Begin(std::int64_t second) {
  // A file bears the second in which it was put aside, behind its last line.
  std::map<std::uint64_t, std::string> by_second;
  if (const auto names = files_.List(folder_)) {
    for (const std::string& name : names.value()) {
      const auto aside = SecondOfName(name);
      if (aside && *aside >= static_cast<std::uint64_t>(std::max<std::int64_t>(0, second)))
        by_second[*aside] = platform::JoinPath(folder_, name);
    }
  }
  for (const auto& [aside, path] : by_second) {
    if (auto opened = Open(path)) return {opened.value().identity, 0, "", false};
  }
  return {};
}

bool Follower::IsThatOne(Opened& opened, const Position& position) {
  if (opened.identity != position.file || opened.size < position.offset) return false;
  const auto length = static_cast<std::int64_t>(position.before.size());
  if (length > position.offset) return false;
  const auto before = ReadAt(*opened.stream, position.offset - length, position.before.size());
  return before && before.value() == position.before;
}

platform::Result<bool> Follower::ReadFile(Opened& opened, Position& position, std::int64_t& budget,
                                          const std::function<void(std::string_view)>& take) {
  for (;;) {
    if (budget <= 0) return false;
    const auto block = ReadAt(*opened.stream, position.offset, kBlock);
    if (!block) return block.error();
    std::string_view bytes = block.value();
    budget -= std::max<std::int64_t>(1, static_cast<std::int64_t>(bytes.size()));
    const bool is_last = bytes.size() < kBlock;
    const auto last_end = bytes.rfind('\n');
    if (last_end == std::string_view::npos) {
      if (is_last && !position.mid_line) return true;
      MoveOn(position, bytes);
      position.mid_line = true;
      if (is_last) return true;
      continue;
    }
    bytes = bytes.substr(0, last_end + 1);
    for (std::string_view rest = bytes; !rest.empty();) {
      const auto end = rest.find('\n');
      if (!std::exchange(position.mid_line, false)) take(rest.substr(0, end));
      rest.remove_prefix(end + 1);
    }
    MoveOn(position, bytes);
    if (is_last) return true;
  }
}

std::vector<std::string> Follower::PutAside(const Position& position) {
  const auto names = files_.List(folder_);
  if (!names) return {};
  std::map<std::uint64_t, std::string> by_second;
  for (const std::string& name : names.value()) {
    if (const auto second = SecondOfName(name)) by_second[*second] = platform::JoinPath(folder_, name);
  }
  std::vector<std::string> unread;
  bool found = false;
  for (const auto& [second, path] : by_second) {
    if (!found) {
      auto opened = Open(path);
      found = opened && IsThatOne(opened.value(), position);
    }
    if (found) unread.push_back(path);
  }
  return unread;
}

Reading Follower::ReadOn(const Position& from, const Take& take) {
  Reading reading{from, false, false, ""};
  Position& position = reading.position;
  std::int64_t budget = kMostBytes;
  const auto hand_on = [&](std::string_view line) { take(line, reading.replaced); };
  const bool is_there = files_.Exists(path_);
  auto current = is_there ? Open(path_) : platform::Result<Opened>(Opened());
  if (!current) {
    reading.error = current.error().text;
    return reading;
  }
  const bool had_one = position.file != platform::FileIdentity() || position.offset > 0;
  if (!is_there || !IsThatOne(current.value(), position)) {
    const auto unread = had_one ? PutAside(position) : std::vector<std::string>();
    for (const std::string& path : unread) {
      auto opened = Open(path);
      if (!opened) continue;  // deleted meanwhile
      if (opened.value().identity != position.file) position = {opened.value().identity, 0, "", false};
      const auto ended = ReadFile(opened.value(), position, budget, hand_on);
      if (ended && ended.value()) continue;
      reading.more = ended.ok();
      if (!ended) reading.error = ended.error().text;
      return reading;
    }
    if (!is_there) return reading;
    reading.replaced = had_one && unread.empty();
    position = {current.value().identity, 0, "", false};
  }
  const auto ended = ReadFile(current.value(), position, budget, hand_on);
  reading.more = ended && !ended.value();
  if (!ended) reading.error = ended.error().text;
  return reading;
}

}  // namespace zendrix::mail
