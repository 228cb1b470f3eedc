#include "act/block_record.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "family/intermediate/manifest.h"
#include "family/intermediate/sha256.h"

namespace zendrix::act {
namespace {

constexpr std::string_view kHeading = "zendrix-blocks 1\n";
constexpr std::string_view kSum = "sum\t";
// 1,000 paths of 4 kB, each byte written as three.
constexpr std::int64_t kLargest = std::int64_t{16} << 20;
constexpr std::size_t kFields = 4;

template <class Number>
bool ReadWhole(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

std::optional<BlockedProgram> ProgramOf(std::string_view line) {
  std::vector<std::string_view> fields;
  for (std::size_t start = 0; start <= line.size();) {
    const std::size_t end = std::min(line.find('\t', start), line.size());
    fields.push_back(line.substr(start, end - start));
    start = end + 1;
  }
  BlockedProgram program;
  const bool whole = fields.size() == kFields && ReadWhole(fields[0], program.when) &&
                     ReadWhole(fields[1], program.user) && IsSha256(fields[2]) &&
                     family::Unescape(fields[3], program.path) && program.path.starts_with('/');
  if (!whole) return std::nullopt;
  program.sha256 = fields[2];
  return program;
}

bool IsThe(const BlockedProgram& program, const std::string& path, const std::string& sha256) {
  return program.path == path && program.sha256 == sha256;
}

}  // namespace

bool IsSha256(std::string_view text) {
  return text.size() == family::kSha256Digits &&
         text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

std::string TextOfBlocks(const std::vector<BlockedProgram>& blocks) {
  std::string text(kHeading);
  for (const BlockedProgram& program : blocks)
    text += std::to_string(program.when) + "\t" + std::to_string(program.user) + "\t" + program.sha256 +
            "\t" + family::Escape(program.path) + "\n";
  const std::string sum = family::Sha256Of(text);
  return text.append(kSum).append(sum).append("\n");
}

std::optional<std::vector<BlockedProgram>> ParseBlocks(std::string_view text) {
  std::vector<BlockedProgram> blocks;
  std::string_view rest = text;
  if (!rest.starts_with(kHeading)) return std::nullopt;
  rest.remove_prefix(kHeading.size());
  while (!rest.starts_with(kSum)) {
    const std::size_t end = rest.find('\n');
    if (end == std::string_view::npos || blocks.size() == BlockRecord::kMost) return std::nullopt;
    auto program = ProgramOf(rest.substr(0, end));
    if (!program) return std::nullopt;
    blocks.push_back(std::move(*program));
    rest.remove_prefix(end + 1);
  }
  // The sum, and every other way to write the same.
  if (TextOfBlocks(blocks) != text) return std::nullopt;
  return blocks;
}

bool BlockRecord::Load() {
  if (blocks_) return true;
  const auto size = files_.Size(path_);
  if (!size && size.error().kind == platform::ErrorKind::kNotFound) {
    blocks_.emplace();
    return true;
  }
  if (!size) {
    why_ = size.error();
    return false;
  }
  std::string text;
  if (size.value() <= kLargest) {
    auto read = files_.ReadAll(path_);
    if (!read) {
      why_ = read.error();
      return false;
    }
    text = std::move(read.value());
  }
  blocks_ = ParseBlocks(text);
  if (blocks_) return true;
  const auto aside = files_.Rename(path_, path_ + ".damaged-" + std::to_string(clock_.NowUtc()));
  if (!aside) {
    why_ = aside.error();
    return false;
  }
  blocks_.emplace();
  return true;
}

std::optional<BlockedProgram> BlockRecord::Find(const std::string& path, const std::string& sha256) {
  if (!Load()) return std::nullopt;
  const auto found = std::find_if(blocks_->begin(), blocks_->end(), [&](const BlockedProgram& program) {
    return IsThe(program, path, sha256);
  });
  if (found == blocks_->end()) return std::nullopt;
  return *found;
}

platform::Status BlockRecord::Write(std::vector<BlockedProgram> blocks) {
  const auto written = files_.WriteAll(path_, TextOfBlocks(blocks));
  if (written) blocks_ = std::move(blocks);
  return written;
}

platform::Status BlockRecord::Add(const BlockedProgram& program) {
  if (!Load()) return why_;
  auto blocks = *blocks_;
  std::erase_if(blocks, [&](const BlockedProgram& one) { return IsThe(one, program.path, program.sha256); });
  blocks.push_back(program);
  if (blocks.size() > kMost) blocks.erase(blocks.begin());
  return Write(std::move(blocks));
}

platform::Status BlockRecord::Forget(const std::string& path, const std::string& sha256) {
  if (!Load()) return why_;
  auto blocks = *blocks_;
  const auto gone =
      std::erase_if(blocks, [&](const BlockedProgram& one) { return IsThe(one, path, sha256); });
  if (gone == 0) return platform::Done{};
  return Write(std::move(blocks));
}

}  // namespace zendrix::act
