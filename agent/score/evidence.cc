#include "agent/score/evidence.h"

#include <algorithm>
#include <cmath>

#include "agent/host/places.h"
#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr double kLeastWeight = 0.02;  // less changes nothing that a person would see
constexpr double kGuessingWeight = 0.96;
constexpr std::size_t kMostPutOff = 1000;
constexpr std::size_t kMostTalking = 4000;
constexpr std::size_t kMostFailing = 5000;
constexpr double kMostAtOnce = 1e9;
constexpr std::size_t kShortName = 80;

// No path holds a NUL.
std::string Pair(std::string_view first, std::string_view second) {
  std::string key(first);
  key += '\0';
  key += second;
  return key;
}

Fact NewsFact(int number, Topic topic, int days, std::string text) {
  Fact fact;
  fact.number = number;
  fact.topic = topic;
  fact.full_weight = kNoveltyWeight;
  fact.weight = kNoveltyWeight * Fading(days);
  fact.days = days;
  fact.text = std::move(text);
  return fact;
}

void AddIfItCounts(std::vector<Fact>& facts, Fact fact) {
  if (fact.weight >= kLeastWeight) facts.push_back(std::move(fact));
}

std::string FolderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return CleanName(slash == std::string::npos || slash == 0 ? path : path.substr(0, slash), kShortName);
}

// What a rule says of this very item.
std::string TextOf(Rule rule, const Item& item) {
  switch (rule) {
    case Rule::kProgramInTemporaryFolder:
    case Rule::kProgramOutsideSystem:
      return "runs from " + FolderOf(ProgramKey(item));
    case Rule::kProgramHidden:
      return "runs from a hidden place";
    case Rule::kPreloadList:
      return "is loaded into every program";
    default:
      return std::string(FactsOf(rule).text);
  }
}

bool MayBeTalker(const Item& item) {
  return !IsInterpreter(ProgramKey(item));
}

// Who talks with everybody at usual ports, as browsers do, need not do so at others, as file sharing does.
std::string TalkerKey(const Item& item) {
  const bool unusual = item.rules.Has(Rule::kConnectionToUnusualPort);
  return unusual ? Pair(ProgramKey(item), "unusual ports") : ProgramKey(item);
}

bool IsOfProgram(Rule rule) {
  return FactsOf(rule).number / 100 == 1;
}

}  // namespace

const std::string& ProgramKey(const Item& item) {
  return item.program.empty() ? item.subject : item.program;
}

// Descriptions read "port:path" and "address:port:path".
std::optional<Evidence::Thing> Evidence::ThingOf(const Item& item) {
  const std::string& description = item.description;
  const auto first = description.find(':');
  if (item.monitor == monitor::kPorts) {
    const std::string port = description.substr(0, first);
    return Thing{Known::kPort, Pair(port, ProgramKey(item)), kNewPort, Topic::kPort, "opened port " + port};
  }
  if (item.monitor == monitor::kConnections) {
    const auto second = first == std::string::npos ? first : description.find(':', first + 1);
    const std::string address = description.substr(0, first);
    const std::string port =
        first == std::string::npos ? "" : description.substr(first + 1, second - first - 1);
    return Thing{Known::kConnection, Pair(ProgramKey(item), address + ":" + port), kNewConnection,
                 Topic::kConnection, "connected with " + address + " port " + port};
  }
  if (item.monitor == monitor::kAutorun) {
    const std::string file = description.substr(0, description.find('='));
    return Thing{Known::kAutostart, description, kNewAutostart, Topic::kAutostart,
                 "starts by itself from " + CleanName(file, kShortName)};
  }
  if (item.monitor == monitor::kAccounts)
    return Thing{Known::kAccount, description, kNewAccount, Topic::kAccount,
                 "account was never there before"};
  if (item.monitor == monitor::kFolders)
    return Thing{Known::kFile, description, kNewFile, Topic::kFile,
                 CleanName(description, kShortName) + " was never there before"};
  if (item.monitor == monitor::kLogins)
    return Thing{Known::kLogin, description, kNewLogin, Topic::kLogin, "login " + description};
  return {};
}

// What an interpreter runs differs from one time to the next.
bool Evidence::IsTalker(const Item& item) const {
  return item.monitor == monitor::kConnections && MayBeTalker(item) &&
         baseline_.DaysBefore(Known::kTalker, TalkerKey(item)).has_value();
}

bool Evidence::IsKnown(const Item& item) const {
  if (item.monitor == monitor::kProcesses)
    return baseline_.DaysBefore(Known::kPath, ProgramKey(item)).has_value();
  const auto thing = ThingOf(item);
  return !thing || IsTalker(item) || baseline_.DaysBefore(thing->kind, thing->key).has_value();
}

std::vector<Fact> Evidence::Of(const Event& event, Moment now) {
  std::vector<Fact> facts;
  OfGuessing(event, now);
  if (event.kind == EventKind::kRemoved) return facts;
  const Item& item = event.item;
  const bool is_process = item.monitor == monitor::kProcesses;
  const bool has_program = is_process || !item.program.empty();
  const int program_days = has_program ? OfProgram(item, now, facts)
                                       : baseline_.DaysBefore(Known::kPath, ProgramKey(item)).value_or(0);
  if (is_process) OfParent(item, facts);
  std::optional<int> thing_days;
  if (const auto thing = ThingOf(item)) thing_days = OfThing(*thing, item, facts);
  OfRules(item, program_days, thing_days, facts);
  return facts;
}

std::string Evidence::SinceText() const {
  const int days = baseline_.days_watched();
  return days > 1 ? "first seen in " + std::to_string(days) + " days" : "first seen today";
}

// On how many days before today this program, with these contents, was seen.
int Evidence::OfProgram(const Item& item, Moment now, std::vector<Fact>& facts) {
  const std::string& path = ProgramKey(item);
  const Contents contents = item.program.empty()
                                ? Contents()
                                : files_.Of(item.program, now.monotonic_ms, {item.inode, item.process});
  const auto path_days = baseline_.See(Known::kPath, path, contents.package);
  auto days = path_days;
  if (!contents.is_put_off || !PutOff(item)) {
    // Contents that cannot be read are no others' equal: they are known only as far as they could not be read
    // before, and what could not be read does not excuse what can.
    days = baseline_.See(Known::kProgram, Pair(path, contents.sha256), contents.package);
    if (path_days && !days) {
      const char* const text = contents.sha256.empty()
                                   ? "cannot be read and compared with what was seen before"
                                   : "has changed since it was last seen";
      AddIfItCounts(facts, NewsFact(kChangedProgram, Topic::kProgram, 0, text));
      return 0;
    }
  }
  const int count = days.value_or(0);
  std::string text = count == 0 ? SinceText() : "seen on " + std::to_string(count) + " days before";
  if (count == 1) text = "seen on 1 day before";
  AddIfItCounts(facts, NewsFact(kNewProgram, Topic::kProgram, count, std::move(text)));
  return count;
}

// False when too many wait.
bool Evidence::PutOff(const Item& item) {
  if (put_off_.size() >= kMostPutOff) return false;
  put_off_.push_back(item);
  return true;
}

std::vector<Event> Evidence::TakePutOff(Moment now) {
  std::vector<Event> events;
  if (put_off_.empty() || now.monotonic_ms / 1000 == put_off_second_) return events;
  put_off_second_ = now.monotonic_ms / 1000;
  for (Item& item : std::exchange(put_off_, {})) {
    Event& event = events.emplace_back();
    event.kind = EventKind::kAdded;
    event.item = std::move(item);
  }
  return events;
}

void Evidence::OfParent(const Item& item, std::vector<Fact>& facts) {
  if (item.parent.empty()) return;
  const std::string key = Pair(item.parent, ProgramKey(item));
  const int days = baseline_.See(Known::kParent, key).value_or(0);
  AddIfItCounts(facts, NewsFact(kNewParent, Topic::kParent, days,
                                "started by " + CleanName(item.parent, kShortName) + " as never before"));
}

std::optional<int> Evidence::OfThing(const Thing& thing, const Item& item, std::vector<Fact>& facts) {
  const auto days = baseline_.DaysBefore(thing.kind, thing.key);
  if (!days && thing.kind == Known::kConnection) {
    if (IsTalker(item)) {
      baseline_.See(Known::kTalker, TalkerKey(item));
      return baseline_.DaysBefore(Known::kTalker, TalkerKey(item));
    }
    if (addresses_.size() >= kMostTalking) addresses_.clear();
    if (MayBeTalker(item) && ++addresses_[TalkerKey(item)] >= kTalkerAddresses)
      baseline_.See(Known::kTalker, TalkerKey(item));
  }
  baseline_.See(thing.kind, thing.key);
  AddIfItCounts(facts, NewsFact(thing.number, thing.topic, days.value_or(0), thing.text));
  return days;
}

void Evidence::OfRules(const Item& item, int program_days, std::optional<int> thing_days,
                       std::vector<Fact>& facts) {
  for (const Rule rule : ByWeight(item.rules)) {
    // That a port came says less than that it was never open before.
    if (rule == Rule::kPortNew) continue;
    Fact fact;
    fact.number = FactsOf(rule).number;
    fact.topic = TopicOf(rule);
    fact.hard = IsHard(rule);
    fact.full_weight = FactsOf(rule).weight;
    fact.days = IsOfProgram(rule) ? program_days : thing_days.value_or(0);
    fact.weight = fact.full_weight * (fact.hard ? 1 : Fading(fact.days));
    fact.text = TextOf(rule, item);
    AddIfItCounts(facts, std::move(fact));
  }
}

void Evidence::DropOldestFailure() {
  const Failure& oldest = failures_.front();
  failed_ -= oldest.count;
  const auto source = sources_.find(oldest.subject);
  source->second.count -= oldest.count;
  if (source->second.count <= 0) sources_.erase(source);
  failures_.pop_front();
}

void Evidence::OfGuessing(const Event& event, Moment now) {
  guessed_.reset();
  const Item& item = event.item;
  if (event.kind != EventKind::kHappened || item.monitor != monitor::kSystem || event.change < 1) return;
  if (!item.description.starts_with("failed login")) return;
  const std::int64_t count = std::llround(std::min(event.change, kMostAtOnce));
  failures_.push_back({now.monotonic_ms, count, item.subject});
  Source& source = sources_[item.subject];
  source.count += count;
  source.item = item;
  failed_ += count;
  while (failures_.front().at_ms + kGuessingMs < now.monotonic_ms || failures_.size() > kMostFailing)
    DropOldestFailure();
  if (failed_ < kGuesses) return;
  const auto most = std::max_element(sources_.begin(), sources_.end(), [](const auto& a, const auto& b) {
    return a.second.count < b.second.count;
  });
  const bool is_one = most->second.count >= kGuesses;
  const std::int64_t sum = is_one ? most->second.count : failed_;
  Guessing guessing;
  guessing.item = most->second.item;
  guessing.subject = is_one ? most->first : "failed logins of many sources";
  Fact& fact = guessing.fact;
  fact.number = kPasswordGuessing;
  fact.topic = Topic::kGuessing;
  fact.weight = fact.full_weight = kGuessingWeight;
  fact.hard = true;
  fact.count = static_cast<int>(std::min<std::int64_t>(sum, 1000000));
  fact.text = std::to_string(sum) + " logins failed in 10 minutes";
  if (!is_one)
    fact.text += " - the most, " + std::to_string(most->second.count) + ", as " + CleanText(most->first);
  guessed_ = std::move(guessing);
}

}  // namespace zendrix::agent
