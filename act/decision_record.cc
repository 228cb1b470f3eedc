#include "act/decision_record.h"

#include <vector>

namespace zendrix::act {
namespace {

constexpr std::string_view kAlertLetters = "AG,";
constexpr std::size_t kAlertDigits = 24;
// All that can stand in it, and room for line ends of another kind.
constexpr std::int64_t kMostDecisionBytes = std::int64_t{1} << 20;

// The code of a line of the file; empty when it is none.
std::string_view CodeOfLine(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (!line.ends_with(",0") && !line.ends_with(",1")) return {};
  line.remove_suffix(2);
  return IsAlertCode(line) ? line : std::string_view();
}

std::string LineFor(std::string_view code, bool block) {
  return std::string(code) + (block ? ",1\r\n" : ",0\r\n");
}

}  // namespace

bool IsAlertCode(std::string_view text) {
  return text.size() == kAlertLetters.size() + kAlertDigits && text.starts_with(kAlertLetters) &&
         text.find_first_not_of("0123456789ABCDEF", kAlertLetters.size()) == std::string_view::npos;
}

std::string WithDecision(std::string_view text, const std::string& code, bool block) {
  std::vector<std::string_view> kept;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string_view line = text.substr(start, end - start);
    start = end + 1;
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::string_view decided = CodeOfLine(line);
    if (!decided.empty() && decided != code) kept.push_back(line);
  }
  std::string result;
  const std::size_t most = DecisionRecord::kMost - 1;
  for (std::size_t i = kept.size() > most ? kept.size() - most : 0; i < kept.size(); ++i)
    result.append(kept[i]).append("\r\n");
  return result + LineFor(code, block);
}

platform::Status DecisionRecord::File(const std::string& code, bool block) {
  std::string text;
  const auto size = files_.Size(path_);
  if (!size && size.error().kind != platform::ErrorKind::kNotFound) return size.error();
  if (size && size.value() <= kMostDecisionBytes) {
    auto read = files_.ReadAll(path_);
    if (!read) return read.error();
    text = std::move(read.value());
  }
  return files_.WriteAll(path_, WithDecision(text, code, block));
}

}  // namespace zendrix::act
