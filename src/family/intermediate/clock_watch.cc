#include "family/intermediate/clock_watch.h"

#include <charconv>

#include "family/intermediate/text_file.h"

namespace zendrix::family {

std::optional<std::int64_t> StartOfComputer(const std::string& proc) {
  const std::string text = TextOf(proc + "/stat").value_or("");
  for (const auto line : LinesOf(text)) {
    // "btime 1795225500"
    const auto words = WordsOf(line);
    if (words.size() != 2 || words[0] != "btime") continue;
    std::int64_t moment = 0;
    const char* const behind = words[1].data() + words[1].size();
    const auto [end, error] = std::from_chars(words[1].data(), behind, moment);
    if (error == std::errc() && end == behind) return moment;
  }
  return std::nullopt;
}

void ClockWatch::Look(const std::string& proc) {
  const auto start = StartOfComputer(proc);
  if (!start) return;
  if (start_ && *start > *start_) set_.forward += *start - *start_;
  if (start_ && *start < *start_) set_.back += *start_ - *start;
  start_ = start;
}

}  // namespace zendrix::family
