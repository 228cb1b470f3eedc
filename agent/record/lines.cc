#include "agent/record/lines.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kSessionMarker = "Begin Session Refresh.";
constexpr std::string_view kObserved = "observed";
constexpr std::string_view kNoReaction = "failed (the Agent only observes)";
constexpr std::size_t kDescriptionWidth = 1536;  // the console cuts there
constexpr int kRiskDecimals = 4;
constexpr int kNumberDecimals = 2;

std::vector<std::string_view> MonitorsOf(const std::vector<Item>& members) {
  std::vector<std::string_view> names;
  for (const Item& member : members) {
    if (std::find(names.begin(), names.end(), member.monitor) == names.end()) names.push_back(member.monitor);
  }
  return names;
}

// Whole numbers without decimals, so that "1" and "-1" stay what they are.
std::string NumberText(double number) {
  return Decimal(number, std::floor(number) == number ? 0 : kNumberDecimals);
}

// The pairs that fit; what a member takes is its pair as the console writes it out.
std::vector<Item> FittingMembers(const std::vector<Item>& members) {
  std::vector<Item> fitting;
  std::size_t width = 0;
  for (const Item& member : members) {
    width += member.monitor.size() + member.description.size() + 2;
    if (width > kDescriptionWidth) break;
    fitting.push_back(member);
  }
  return fitting;
}

class HomeText {
 public:
  HomeText(const Stamp& stamp, BatchText& out) : stamp_(stamp), out_(out) {
    out_.last_second = stamp.seconds;
  }

  void Write(const Batch& batch) {
    // A line of its own and with one description: the console does not split the first line of a file.
    if (batch.begins_session) {
      Line(monitor::kSystem, "0", "0", kSessionMarker, kObserved, EventCode(monitor::kSystem, {}));
    }
    WriteEvents(batch.events);
    for (std::size_t i = 0; i < batch.alerts.size(); ++i) {
      out_.last_second = SecondOfAlert(batch.alerts, i, stamp_.seconds);
      WriteAlert(batch.alerts[i]);
    }
  }

 private:
  void Line(std::string_view monitor_name, std::string_view original, std::string_view change,
            std::string_view description, std::string_view reaction, std::string_view code) {
    std::string& text = out_.bytes;
    text += std::to_string(out_.last_second) + "," + stamp_.host + "," + stamp_.thread + ",";
    for (const std::string_view field : {monitor_name, original, change, description, reaction, code}) {
      text.append(field).append("|");
    }
    text.append("0").append(kLineEnd);
    ++out_.rows;
  }

  // Events of one kind, monitor and code, in the order of the first of each.
  static std::vector<std::vector<const Event*>> Grouped(const std::vector<Event>& events) {
    std::vector<std::vector<const Event*>> groups;
    std::map<std::string, std::size_t> by_key;
    for (const Event& event : events) {
      std::string key = std::to_string(static_cast<int>(event.kind)) + std::string(event.item.monitor) +
                        EventCode(event.item.monitor, event.item.rules);
      if (event.kind == EventKind::kMeasured) key += std::to_string(groups.size());  // has numbers of its own
      const auto [at, is_new] = by_key.emplace(std::move(key), groups.size());
      if (is_new) groups.emplace_back();
      groups[at->second].push_back(&event);
    }
    return groups;
  }

  void WriteEvents(const std::vector<Event>& events) {
    for (const auto& group : Grouped(events)) {
      for (std::size_t i = 0; i < group.size();) i = WriteShared(group, i);
    }
  }

  // One line of the group's events from `first` on; the position behind the last that it took.
  std::size_t WriteShared(const std::vector<const Event*>& group, std::size_t first) {
    constexpr std::size_t kSharedWidth = 8192;  // keeps lines readable for a person
    const Event& head = *group[first];
    std::string descriptions = head.item.description;
    std::size_t next = first + 1;
    for (; next < group.size() && descriptions.size() < kSharedWidth; ++next) {
      descriptions += " * " + group[next]->item.description;
    }
    Line(head.item.monitor, NumberText(head.original), NumberText(head.change), descriptions, kObserved,
         EventCode(head.item.monitor, head.item.rules));
    if (next - first > 1) out_.rows += next - first;  // one number more than rows
    return next;
  }

  void WriteAlert(const Alert& alert) {
    const auto members = FittingMembers(alert.members);
    const std::string code = alert.code + "," + std::to_string(members.size());
    std::string facts;
    for (const std::string& fact : alert.facts) facts += (facts.empty() ? "" : "; ") + fact;
    if (facts.empty()) facts = "none";
    // Original is the risk before a reaction. Change is no lower where the program was blocked again: it is
    // no less grave for that, what became of it stands in the Community line, and decisions are filed under
    // an earlier line with this very Change. Where there is none, the alert goes ahead of itself.
    const int times = alert.has_forerunner || alert.IsQuiet() ? 1 : 2;
    for (int i = 0; i < times; ++i) {
      Line(monitor::kAggregation, Decimal(alert.risk, kRiskDecimals), alert.change,
           AggregationDescription(members), facts, code);
    }
    if (alert.IsQuiet()) return;
    std::string reactions;
    for (const std::string_view name : MonitorsOf(members)) {
      if (!reactions.empty()) reactions += ";";
      // Of a blocked program its running is what was acted on.
      const bool acted = name == monitor::kProcesses && !alert.reaction.empty();
      reactions.append(name).append("=").append(acted ? std::string_view(alert.reaction) : kNoReaction);
    }
    Line(monitor::kCommunity, "0", "0", "reaction to " + CleanName(code), reactions,
         EventCode(monitor::kCommunity, {}));
  }

  const Stamp& stamp_;
  BatchText& out_;
};

bool EqualLetters(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

bool NamesAMonitor(std::string_view word) {
  const auto& names = AllMonitors();
  return std::any_of(names.begin(), names.end(), [&](std::string_view name) {
    return EqualLetters(word, name.substr(name.rfind(' ') + 1));
  });
}

// The console marks the events behind a notable line: those of each monitor whose name's last word stands in
// the line, in any letters, with blanks around it. So such a word that means something else stands in
// brackets, also one in a path, whoever chose it.
std::string NamingNoMonitor(std::string_view text) {
  std::string result;
  for (;;) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, end);
    result += NamesAMonitor(word) ? "(" + std::string(word) + ")" : std::string(word);
    if (end == text.size()) return result;
    result += ' ';
    text.remove_prefix(end + 1);
  }
}

class AdminText {
 public:
  AdminText(const Stamp& stamp, BatchText& out) : stamp_(stamp), out_(out) {
    out_.last_second = stamp.seconds;
  }

  void Write(const Batch& batch) {
    if (batch.begins_session) {
      Line(monitor::kSystem, 'B', kSessionMarker);
      WriteBaseline(batch.events);
    }
    for (const Event& event : batch.events) {
      if (!batch.begins_session || !BelongsToBaseline(event)) WriteEvent(event);
    }
    for (const Alert& alert : batch.alerts) {
      if (!alert.IsQuiet()) Line(monitor::kAnalysis, 'N', Sentence(alert));
    }
  }

 private:
  void Line(std::string_view monitor_name, char code, std::string_view description) {
    std::string& text = out_.bytes;
    text += std::to_string(stamp_.seconds) + "," + stamp_.host + ",";
    text.append(monitor_name).append(",").append(1, code).append(",").append(description).append(kLineEnd);
    ++out_.rows;
  }

  static bool BelongsToBaseline(const Event& event) {
    return event.kind == EventKind::kPresent || event.kind == EventKind::kMeasured;
  }

  void WriteBaseline(const std::vector<Event>& events) {
    std::vector<std::string_view> names = {monitor::kAgent};
    names.insert(names.end(), ItemMonitors().begin(), ItemMonitors().end());
    names.push_back(monitor::kMemory);
    names.push_back(monitor::kTraffic);
    for (const std::string_view name : names) {
      Line(name, 'B', "** Start baseline **");
      for (const Event& event : events) {
        if (event.item.monitor == name && BelongsToBaseline(event)) WriteEvent(event);
      }
      Line(name, 'B', "** End baseline **");
    }
  }

  void WriteEvent(const Event& event) {
    const Item& item = event.item;
    switch (event.kind) {
      case EventKind::kPresent:
      case EventKind::kAdded:
        Line(item.monitor, 'A', item.description);
        break;
      case EventKind::kRemoved:
        Line(item.monitor, 'R', item.description);
        break;
      case EventKind::kMeasured:  // the list of what is holds one value: the new one takes the old one's
                                  // place
        if (!event.reading_before.empty()) Line(item.monitor, 'R', event.reading_before);
        Line(item.monitor, 'A', event.reading);
        break;
      case EventKind::kHappened:
        Line(item.monitor, 'N', item.description);
        break;
    }
  }

  static std::string Sentence(const Alert& alert) {
    std::string text = "Risk " + Decimal(alert.risk, kRiskDecimals) + " from";
    std::string_view separator = " ";
    for (const std::string_view name : MonitorsOf(alert.members)) {
      const std::size_t last = name.rfind(' ') + 1;  // 0 where the name is one word
      text.append(separator).append(NamingNoMonitor(name.substr(0, last))).append(name.substr(last));
      separator = " and ";
    }
    text += " - " + NamingNoMonitor(alert.subject);
    separator = " - ";
    for (const std::string& fact : alert.facts) {
      text.append(separator).append(NamingNoMonitor(fact));
      separator = "; ";
    }
    return text;
  }

  const Stamp& stamp_;
  BatchText& out_;
};

}  // namespace

std::string AggregationDescription(const std::vector<Item>& members) {
  std::string text;
  std::size_t pairs = 0;
  for (const std::string_view name : MonitorsOf(members)) {
    bool open = false;  // the last pair of this monitor may take one more description
    for (const Item& member : members) {
      if (member.monitor != name) continue;
      // A description that holds a "=" would be taken for a pair of its own behind a " * ".
      const bool stands_alone = member.description.find('=') != std::string::npos;
      if (open && !stands_alone) {
        text += " * " + member.description;
      } else {
        if (!text.empty()) text += ";";
        text.append(name).append("=").append(member.description);
      }
      open = !stands_alone;
      ++pairs;
    }
  }
  // A single pair without a ";" would not be read as a list of pairs.
  return pairs == 1 ? text + ";" : text;
}

BatchText RenderBatch(Form form, const Stamp& stamp, const Batch& batch) {
  BatchText out;
  if (form == Form::kHome) {
    HomeText(stamp, out).Write(batch);
  } else {
    AdminText(stamp, out).Write(batch);
  }
  return out;
}

}  // namespace zendrix::agent
