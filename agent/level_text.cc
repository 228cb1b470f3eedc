#include "agent/level_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

std::string Words(const SourceLevel& level) {
  switch (level.level) {
    case Level::kEvents:
      return "every event is told by " + level.how;
    case Level::kNotices:
      return "every change is told by " + level.how;
    case Level::kPolling:
      return level.how;
    case Level::kNone:
      break;
  }
  return "not watched";
}

std::string_view NameOf(Level level) {
  constexpr std::array<std::string_view, 4> kNames = {"events", "notices", "polling", "none"};
  return kNames.at(static_cast<std::size_t>(level));
}

// "a, b and c"
std::string Listed(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " and " : ", ";
    text += names[i];
  }
  return text;
}

// For a person: of what is no plain ASCII only the place is kept.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    if (byte == '"' || byte == '\\') {
      quoted += '\'';
    } else if (code < 0x20 || code > 0x7E) {
      quoted += '?';
    } else {
      quoted += byte;
    }
  }
  return quoted + "\"";
}

constexpr std::string_view kSummary = "\n  \"summary\": \"";
constexpr std::string_view kAlive = "\n  \"alive\": ";

}  // namespace

std::string LevelText(const WatchLevel& level) {
  std::string text = level.watched + " - " + Words(level.level);
  if (!level.level.reason.empty()) text += " - " + level.level.reason;
  return CleanText(text);
}

std::vector<std::string> LevelTexts(const std::vector<WatchLevel>& levels) {
  std::vector<WatchLevel> groups;
  for (const WatchLevel& level : levels) {
    const auto alike = std::find_if(groups.begin(), groups.end(),
                                    [&](const WatchLevel& group) { return group.level == level.level; });
    if (alike == groups.end()) {
      groups.push_back(level);
    } else {
      alike->watched += " and " + level.watched;
    }
  }
  std::vector<std::string> texts;
  for (const WatchLevel& group : groups) texts.push_back(LevelText(group));
  return texts;
}

std::string Summary(const std::vector<WatchLevel>& levels) {
  std::array<std::vector<std::string>, 4> by_level;
  std::vector<std::string> reasons;
  std::string look;
  for (const WatchLevel& one : levels) {
    by_level.at(static_cast<std::size_t>(one.level.level)).push_back(one.watched);
    if (one.level.level == Level::kPolling) look = one.level.how;
    const bool is_new = std::find(reasons.begin(), reasons.end(), one.level.reason) == reasons.end();
    if (!one.level.reason.empty() && is_new) reasons.push_back(one.level.reason);
  }
  std::vector<std::string> told = by_level[0];
  told.insert(told.end(), by_level[1].begin(), by_level[1].end());
  std::string text;
  if (!told.empty()) text += "It is told at once of " + Listed(told) + ". ";
  if (!by_level[2].empty()) {
    text += "By " + look + " it sees " + Listed(by_level[2]) + ", but not what comes and goes in between. ";
  }
  if (!by_level[3].empty()) text += "It cannot see " + Listed(by_level[3]) + ". ";
  if (!reasons.empty()) text += "Why not more: " + Listed(reasons) + ". ";
  while (text.ends_with(' ')) text.pop_back();
  return text;
}

std::string DurationText(std::int64_t seconds) {
  if (seconds < 120) return std::to_string(seconds) + " s";
  const std::int64_t minutes = seconds / 60;
  if (minutes < 60) return std::to_string(minutes) + " min";
  const std::string hours = std::to_string(minutes / 60) + " h";
  return minutes % 60 == 0 ? hours : hours + " " + std::to_string(minutes % 60) + " min";
}

std::string StatusJson(const Status& status) {
  const auto number = [](std::string_view name, auto value) {
    return "  " + Quoted(name) + ": " + std::to_string(value);
  };
  std::string text = "{\n  \"running\": " + std::string(status.running ? "true" : "false") + ",\n";
  text += number("process", status.process) + ",\n";
  text += number("started", status.started) + ",\n";
  text += number("alive", status.alive) + ",\n";
  text += "  \"summary\": " + Quoted(Summary(status.levels)) + ",\n  \"levels\": [";
  std::string_view separator = "\n";
  for (const WatchLevel& one : status.levels) {
    text.append(separator).append("    {\"watched\": ").append(Quoted(one.watched));
    text.append(", \"level\": ").append(Quoted(NameOf(one.level.level)));
    text.append(", \"how\": ").append(Quoted(one.level.how));
    text.append(", \"reason\": ").append(Quoted(one.level.reason)).append("}");
    separator = ",\n";
  }
  text += "\n  ],\n  \"last_minute\": {";
  const MinuteNumbers& minute = status.minute;
  text += "\"events\": " + std::to_string(minute.events) + ", \"rows\": " + std::to_string(minute.rows) +
          ", \"alerts\": " + std::to_string(minute.alerts) +
          ", \"counted\": " + std::to_string(minute.counted) + ", \"lost\": " + std::to_string(minute.lost);
  return text + "}\n}\n";
}

std::string SummaryIn(std::string_view json) {
  const std::size_t at = json.find(kSummary);
  if (at == std::string_view::npos) return "";
  const std::string_view rest = json.substr(at + kSummary.size());
  return std::string(rest.substr(0, rest.find('"')));
}

std::int64_t AliveIn(std::string_view json) {
  const std::size_t at = json.find(kAlive);
  if (at == std::string_view::npos) return 0;
  const std::string_view rest = json.substr(at + kAlive.size());
  std::uint64_t seconds = 0;
  if (!ReadNumber(rest.substr(0, rest.find_first_not_of("0123456789")), seconds)) return 0;
  return seconds < (1ULL << 31U) ? static_cast<std::int64_t>(seconds) : 0;
}

}  // namespace zendrix::agent
