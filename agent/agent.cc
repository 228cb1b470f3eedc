#include "agent/agent.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "agent/host/observe_accounts.h"
#include "agent/host/observe_host.h"
#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kMostAlerts = 50;  // of one batch; a person cannot read more
constexpr std::size_t kMostUnweighed = 50000;
constexpr std::int64_t kLookTurnMs = 100;  // how long a request to stop may wait
constexpr std::int64_t kMinuteMs = 60000;
constexpr std::int64_t kPressedTurnMs = 1000;
constexpr std::int64_t kDowntimeAfterStop = 10;  // seconds that are worth a row
constexpr std::int64_t kDowntimeAfterKill = 90;  // as many pass at most between two signs of life, and some
constexpr std::size_t kHostNameLimit = 50;       // the console's width
constexpr std::size_t kStatusLimit = 65536;

void Append(std::vector<Event>& events, std::vector<Event> more) {
  events.insert(events.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

std::string FormName(Form form) {
  return form == Form::kHome ? "home" : "admin";
}

Item AgentItem(const std::string& description) {
  Item item;
  item.monitor = monitor::kAgent;
  item.subject = "Agent";
  item.description = description;
  return item;
}

std::vector<Recording> MakeRecordings(const AgentParts& parts, const Options& options) {
  const Author author = {CleanName(parts.host_name, kHostNameLimit), std::to_string(parts.own_pid)};
  std::vector<Recording> recordings;
  const auto add = [&](const std::string& folder, Form form) {
    recordings.emplace_back(parts.files, parts.clock, parts.errors, folder, form, author, parts.make_like);
  };
  if (options.state.empty()) {
    add(options.folder, options.form);
  } else {
    add(platform::JoinPath(options.state, "home"), Form::kHome);
    add(platform::JoinPath(options.state, "admin"), Form::kAdmin);
  }
  return recordings;
}

}  // namespace

Agent::Agent(AgentParts parts, Options options)
    : parts_(std::move(parts)),
      options_(std::move(options)),
      status_path_(
          platform::JoinPath(options_.state.empty() ? options_.folder : options_.state, kStatusFile)),
      recordings_(MakeRecordings(parts_, options_)),
      enforcement_(parts_.helper),
      decisions_(parts_.files,
                 options_.state.empty() ? options_.folder : platform::JoinPath(options_.state, "decisions"),
                 options_.state.empty() ? options_.folder : platform::JoinPath(options_.state, "home")),
      watch_(parts_.host, parts_.clock, parts_.own_pid, options_.interval_seconds * 1000, parts_.sources,
             parts_.numbers),
      pace_(parts_.clock.MonotonicMs(), [this](const Item& item) { return parts_.scorer.IsKnown(item); }) {}

int Agent::Run() {
  if (!OpenRecordings()) return 1;
  for (Recording& recording : recordings_) {
    const Form form = options_.state.empty()   ? options_.form
                      : &recording == &First() ? Form::kHome
                                               : Form::kAdmin;
    recording.Log("Agent started; form " + FormName(form) + "; it only observes");
  }
  started_ = parts_.clock.NowUtc();
  started_ms_ = parts_.clock.MonotonicMs();
  next_numbers_ms_ = started_ms_;
  minute_ends_ms_ = started_ms_ + kMinuteMs;
  const std::int64_t end_ms =
      options_.for_seconds ? started_ms_ + *options_.for_seconds * 1000 : std::int64_t{-1};
  for (;;) {
    Turn();
    if (options_.once || parts_.stop_requested()) break;
    if (end_ms >= 0 && parts_.clock.MonotonicMs() >= end_ms) break;
    Rest();
    if (parts_.stop_requested()) break;
  }
  End();
  const bool failing = std::any_of(recordings_.begin(), recordings_.end(), [](const Recording& recording) {
    return recording.IsFailing() && recording.HasFolder();
  });
  return failing ? 1 : 0;
}

bool Agent::OpenRecordings() {
  return std::all_of(recordings_.begin(), recordings_.end(),
                     [](Recording& recording) { return recording.Open(); });
}

void Agent::Turn() {
  std::vector<Event> told;
  TellGaps(told);
  if (is_first_) {
    NoticeFirst(told);
  } else {
    NoticeChanges(told);
  }
  TellLosses(told);
  Deliver(told, false);
  FollowDecisions();
}

void Agent::FollowDecisions() {
  for (const std::string& message : decisions_.Follow(parts_.scorer, parts_.clock.MonotonicMs()))
    Log(message);
  for (const std::string& message : parts_.scorer.TakeMessages()) Log(CleanText(message));
}

// What is there at the start goes into the session that every file begins with.
void Agent::NoticeFirst(std::vector<Event>& told) {
  is_first_ = false;
  watch_.Turn();
  levels_told_ = watch_.levels();
  for (const std::string& text : LevelTexts(levels_told_)) Log(text);
  const auto present = PresentEvents(watch_.ledger().Items());
  minute_.events += present.size();
  pace_.Begin(present);
  TakeNumbers(told);
  TellDowntime(told);
  WriteStatus(true);
}

void Agent::NoticeChanges(std::vector<Event>& told) {
  auto events = watch_.Turn();
  minute_.events += events.size();
  NoteUnweighed(events);
  TellLevels(told);
  Append(told, pace_.Take(std::move(events), parts_.clock.MonotonicMs()));
  TakeNumbers(told);
  EndMinute(told);
}

void Agent::TakeNumbers(std::vector<Event>& told) {
  const std::int64_t now = parts_.clock.MonotonicMs();
  const bool is_first = next_numbers_ms_ == started_ms_;
  // Memory that runs short is looked at in that moment, at most once a second.
  if (parts_.numbers && parts_.numbers->IsPressed() && now >= not_pressed_before_ms_) next_numbers_ms_ = now;
  if (now < next_numbers_ms_) return;
  not_pressed_before_ms_ = now + kPressedTurnMs;
  next_numbers_ms_ = std::max(next_numbers_ms_ + options_.interval_seconds * 1000, now);
  Snapshot seen = ObserveNumbers(parts_.host, now);
  const auto known = measures_.failed_logins();
  if (known && seen.failed_logins)
    seen.new_failed_logins = ReadFailedLogins(parts_.host, *known, *seen.failed_logins);
  if (parts_.numbers) {
    const auto bytes = parts_.numbers->TrafficBytes();
    if (bytes) seen.traffic_bytes = bytes;
  }
  if (measures_.WantsMemoryUsers(seen)) {
    seen.memory_users = ObserveLargestPrograms(parts_.host, parts_.own_pid);
  }
  auto measured =
      measures_.Take(seen, [this, now](const Item& item) { return pace_.MayTellNumber(item, now); });
  // The session that begins says how the numbers stand.
  if (is_first)
    std::erase_if(measured, [](const Event& event) { return event.kind == EventKind::kMeasured; });
  NoteUnweighed(measured);
  Append(told, measured);
}

void Agent::TellOfAgent(const std::string& message, double count, std::vector<Event>& told) {
  Event event = HappenedEvent(AgentItem(CleanText(message)));
  event.change = count;
  Log(event.item.description);
  told.push_back(std::move(event));
}

void Agent::TellGaps(std::vector<Event>& told) {
  const std::int64_t monotonic = parts_.clock.MonotonicMs();
  const std::int64_t boot = parts_.boot_ms ? parts_.boot_ms() : monotonic;
  for (const std::string& gap : gaps_.Notice({parts_.clock.NowUtc(), monotonic, boot})) {
    TellOfAgent(gap, 1, told);
  }
}

void Agent::TellDowntime(std::vector<Event>& told) {
  const auto status = parts_.files.ReadAll(status_path_);
  const std::string text = status && status.value().size() <= kStatusLimit ? status.value() : "";
  const bool stopped = text.find("\"running\": false") != std::string::npos;
  const std::int64_t alive = std::max(AliveIn(text), First().LastSecond());
  const std::int64_t gap = started_ - alive;
  if (alive == 0 || gap < (stopped ? kDowntimeAfterStop : kDowntimeAfterKill)) return;
  TellOfAgent("the Agent did not run for " + DurationText(gap) + " - nothing was seen in that time", 1, told);
}

// At once, and then once a minute as long as it goes on.
void Agent::TellLosses(std::vector<Event>& told) {
  const std::uint64_t lost = watch_.TakeLost();
  lost_ += lost;
  const std::uint64_t left_out = watch_.TakeLeftOut();
  left_out_ += left_out;
  minute_.lost += lost + left_out;
  const std::int64_t now = parts_.clock.MonotonicMs();
  if ((lost_ == 0 && left_out_ == 0 && weighed_never_ == 0) || now < next_loss_ms_) return;
  next_loss_ms_ = now + kMinuteMs;
  if (lost_ > 0) {
    TellOfAgent(std::to_string(lost_) + " events were lost - more happened than could be seen",
                static_cast<double>(lost_), told);
  }
  if (left_out_ > 0) {
    TellOfAgent(std::to_string(left_out_) + " entries were not looked at - too many, or they may not be read",
                static_cast<double>(left_out_), told);
  }
  if (weighed_never_ > 0) {
    TellOfAgent(std::to_string(weighed_never_) + " events were seen but not weighed - there were too many",
                static_cast<double>(weighed_never_), told);
  }
  lost_ = 0;
  left_out_ = 0;
  weighed_never_ = 0;
}

void Agent::TellLevels(std::vector<Event>& told) {
  const auto& levels = watch_.levels();
  if (levels == levels_told_) return;
  std::vector<Event> came;
  for (const WatchLevel& before : levels_told_) {
    if (std::find(levels.begin(), levels.end(), before) == levels.end())
      told.push_back(WentEvent(AgentItem(LevelText(before))));
  }
  for (const WatchLevel& now : levels) {
    if (std::find(levels_told_.begin(), levels_told_.end(), now) != levels_told_.end()) continue;
    came.push_back(CameEvent(AgentItem(LevelText(now))));
    Log(LevelText(now));
  }
  Append(told, came);
  levels_told_ = levels;
  WriteStatus(true);
}

void Agent::EndMinute(std::vector<Event>& told) {
  const std::int64_t now = parts_.clock.MonotonicMs();
  if (const auto row = pace_.Minute(now)) told.push_back(*row);
  if (now < minute_ends_ms_) return;
  minute_ends_ms_ = now + kMinuteMs;
  minute_.rows = First().TakeRows();
  minute_.counted = pace_.counted() - std::exchange(counted_before_, pace_.counted());
  last_minute_ = std::exchange(minute_, {});
  WriteStatus(true);
}

void Agent::NoteUnweighed(const std::vector<Event>& events) {
  if (unweighed_.size() + events.size() > kMostUnweighed) {
    weighed_never_ += events.size();
  } else {
    // What went is no evidence.
    std::copy_if(events.begin(), events.end(), std::back_inserter(unweighed_),
                 [](const Event& event) { return event.kind != EventKind::kRemoved; });
  }
}

std::vector<Event> Agent::Present() const {
  std::vector<Event> present;
  for (const WatchLevel& level : levels_told_) {
    Append(present, PresentEvents({AgentItem(LevelText(level))}));
  }
  auto items = watch_.ledger().Items();
  std::erase_if(items, [&](const Item& item) { return !pace_.IsTold(item); });
  Append(present, PresentEvents(items));
  Append(present, measures_.Present());
  return present;
}

void Agent::Deliver(const std::vector<Event>& told, bool at_end) {
  const bool is_news = pace_.TakeNews();
  for (Recording& recording : recordings_) {
    recording.Add(told);
    if (is_news) recording.Hurry();
    if (!recording.WantsSession()) continue;
    recording.Begin(Present());
    if (&recording != &First()) continue;
    // The alerts of what is still there belong into the new file too.
    parts_.scorer.BeginFile();
    auto before = std::exchange(unweighed_, PresentEvents(watch_.ledger().Items()));
    Append(unweighed_, measures_.Present());
    std::erase_if(before, [](const Event& event) { return event.kind == EventKind::kPresent; });
    NoteUnweighed(before);
  }
  if (First().MayWrite() || at_end) WriteFirst(at_end);
  for (Recording& recording : recordings_) {
    if (&recording != &First() && (recording.IsDue() || at_end)) recording.Write();
  }
  const bool all_begun = std::all_of(recordings_.begin(), recordings_.end(),
                                     [](const Recording& recording) { return recording.HasSession(); });
  if (all_begun && parts_.on_first_look) std::exchange(parts_.on_first_look, {})();
}

// Alerts are weighed when they can be written, so that each has the second under which decisions on it are
// kept, and what a full disk refused is weighed again.
void Agent::WriteFirst(bool at_end) {
  const Moment now = Now();
  auto alerts = parts_.scorer.Weigh(unweighed_, now);
  if (at_end) {
    auto rest = parts_.scorer.Rest(now);
    // What is due already is among the rest too.
    std::erase_if(alerts, [&](const Alert& due) {
      return std::any_of(rest.begin(), rest.end(),
                         [&](const Alert& alert) { return alert.subject == due.subject; });
    });
    for (Alert& alert : rest) alerts.push_back(std::move(alert));
  }
  const std::size_t left_out = alerts.size() > kMostAlerts ? alerts.size() - kMostAlerts : 0;
  alerts.erase(alerts.begin(), alerts.begin() + static_cast<std::ptrdiff_t>(left_out));
  for (const Alert& alert : alerts) {
    for (const Item& member : alert.members) {
      const auto released = pace_.Release(member);
      for (Recording& recording : recordings_) recording.Add(released);
    }
  }
  if (alerts.empty() && !First().IsDue() && !at_end) {
    unweighed_.clear();
    return;
  }
  // They are weighed again in the next turn, and nothing of what comes meanwhile is missed.
  if (!at_end && !enforcement_.IsAnswered(alerts)) return;
  for (const std::string& message : enforcement_.React(alerts)) Log(message);
  const auto second = First().Write(alerts);
  if (!second && First().IsFailing()) return;
  unweighed_.clear();
  if (!second) return;
  parts_.scorer.Raised(alerts, *second, now);
  enforcement_.Written();
  minute_.alerts += alerts.size();
  for (Recording& recording : recordings_) {
    if (&recording != &First()) recording.AddAlerts(alerts);
  }
  if (left_out > 0)
    Log("Too many alerts at once; the lightest " + std::to_string(left_out) + " were left out");
}

void Agent::End() {
  std::vector<Event> told;
  if (const auto row = pace_.Rest()) told.push_back(*row);
  Deliver(told, true);
  Log("Agent stopped");
  WriteStatus(false);
}

// For a moment that no source tells of: rows that may be written soon, an alert that comes due.
bool Agent::IsWaiting() const {
  return !unweighed_.empty() || parts_.scorer.IsWaiting() ||
         std::any_of(recordings_.begin(), recordings_.end(),
                     [](const Recording& recording) { return recording.HasWaiting(); });
}

void Agent::Rest() {
  std::int64_t most = watch_.IsTold() ? watch_.RestMs() : kLookTurnMs;
  if (IsWaiting()) most = std::min(most, kDrainMs);
  if (options_.for_seconds) {
    const std::int64_t left = started_ms_ + *options_.for_seconds * 1000 - parts_.clock.MonotonicMs();
    most = std::clamp<std::int64_t>(left, 1, most);
  }
  if (parts_.wait) {
    parts_.wait(most);
  } else {
    parts_.clock.Sleep(most);
  }
}

void Agent::WriteStatus(bool running) {
  Status status;
  status.running = running;
  status.process = running ? parts_.own_pid : 0;
  status.started = started_;
  status.alive = parts_.clock.NowUtc();
  status.levels = levels_told_;
  status.minute = last_minute_;
  const auto written = parts_.files.WriteAll(status_path_, StatusJson(status));
  if (!written && !status_failing_) {
    Log(std::string(kStatusFile) + " cannot be written; " + CleanText(written.error().text));
  }
  status_failing_ = !written.ok();
}

void Agent::Log(const std::string& message) {
  for (Recording& recording : recordings_) recording.Log(message);
}

Moment Agent::Now() const {
  return {parts_.clock.NowUtc(), parts_.clock.MonotonicMs()};
}

}  // namespace zendrix::agent
