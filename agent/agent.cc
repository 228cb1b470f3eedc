#include "agent/agent.h"

#include <algorithm>
#include <utility>

#include "agent/host/observe_host.h"
#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kMostAlerts = 50;     // of one look; a person cannot read more
constexpr std::int64_t kSliceMs = 100;      // how long a request to stop may wait
constexpr std::size_t kHostNameLimit = 50;  // the console's width

void Append(std::vector<Event>& events, std::vector<Event> more) {
  events.insert(events.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

std::string FormName(Form form) {
  return form == Form::kHome ? "home" : "admin";
}

}  // namespace

Agent::Agent(AgentParts parts, Options options)
    : parts_(std::move(parts)),
      options_(std::move(options)),
      host_name_(CleanName(parts_.host_name, kHostNameLimit)),
      log_path_(platform::JoinPath(options_.folder, "KorvessaEventLog.kvl")),
      file_(parts_.files, parts_.clock, platform::JoinPath(options_.folder, "KorvessaMonitoring.kvl"),
            options_.form) {}

int Agent::Run() {
  if (!OpenFolder()) return 1;
  Log("Agent started; form " + FormName(options_.form) + "; it only observes");
  const std::int64_t start = parts_.clock.MonotonicMs();
  const std::int64_t interval = options_.interval_seconds * 1000;
  bool written = Look();
  std::int64_t next = std::max(start + interval, NextLookAfter());
  while (!options_.once && !parts_.stop_requested()) {
    if (options_.for_seconds && next > start + *options_.for_seconds * 1000) {
      Rest(start + *options_.for_seconds * 1000);
      break;
    }
    Rest(next);
    if (parts_.stop_requested()) break;
    written = Look();
    // After a look that took longer than the interval (or a night asleep) the beat starts anew.
    next = std::max(next + interval, NextLookAfter());
  }
  Log("Agent stopped");
  return written ? 0 : 1;
}

// A look before the clock has passed the last alert's second would give its events a wrong time.
std::int64_t Agent::NextLookAfter() const {
  return parts_.clock.MonotonicMs() + file_.AheadMs();
}

bool Agent::OpenFolder() {
  if (!parts_.files.FolderExists(options_.folder)) {
    Complain("no such folder: " + options_.folder);
    return false;
  }
  const auto status = file_.Open();
  if (!status) Complain("cannot take up KorvessaMonitoring.kvl: " + status.error().text);
  return status.ok();
}

bool Agent::Look() {
  BeginAnewIfNeeded();
  Snapshot seen = ObserveHost(parts_.host, parts_.clock.MonotonicMs(), parts_.own_pid);
  Measures measures = measures_;
  Batch batch;
  batch.begins_session = begins_session_;
  batch.events =
      begins_session_ ? PresentEvents(seen.items) : ChangeEvents(Compare(before_.items, seen.items));
  std::vector<Event> measured = measures.Take(seen);
  if (begins_session_) {
    // A file that begins later must say how the numbers stand, also when they did not just move.
    std::erase_if(measured, [](const Event& event) { return event.kind == EventKind::kMeasured; });
    Append(batch.events, measures.Present());
  }
  Append(batch.events, std::move(measured));
  const Moment now{parts_.clock.NowUtc(), seen.taken_ms};
  batch.alerts = scorer_->Weigh(batch.events, now);
  const std::size_t left_out = batch.alerts.size() > kMostAlerts ? batch.alerts.size() - kMostAlerts : 0;
  batch.alerts.erase(batch.alerts.begin(), batch.alerts.begin() + static_cast<std::ptrdiff_t>(left_out));
  const auto first_alert = Write(batch);
  if (!first_alert) return false;
  if (begins_session_) {
    Log("Session began; " + std::to_string(seen.items.size()) + " items; " +
        std::to_string(batch.alerts.size()) + " alerts");
  }
  if (left_out > 0)
    Log("Too many alerts at once; the lightest " + std::to_string(left_out) + " were left out");
  scorer_->Raised(batch.alerts, *first_alert, now);
  measures_ = std::move(measures);
  before_ = std::move(seen);
  begins_session_ = false;
  if (const auto tell = std::exchange(parts_.on_first_look, {})) tell();
  return true;
}

std::optional<std::int64_t> Agent::Write(const Batch& batch) {
  if (batch.events.empty() && batch.alerts.empty() && !batch.begins_session) return 0;
  Stamp stamp;
  stamp.seconds = file_.NextSecond();
  stamp.host = host_name_;
  stamp.thread = std::to_string(parts_.own_pid);
  const auto status = file_.Append(RenderBatch(options_.form, stamp, batch));
  if (!status && !failing_) {
    Complain("cannot write KorvessaMonitoring.kvl: " + status.error().text);
    Log("Monitoring file cannot be written; " + CleanName(status.error().text));
  }
  failing_ = !status.ok();
  if (!status) return {};
  return stamp.seconds;
}

void Agent::BeginAnewIfNeeded() {
  if (file_.WasReplaced()) {
    file_.Forget();
    begins_session_ = true;
    scorer_->BeginFile();
    Log("Monitoring file was removed or replaced; a new session begins");
  }
  if (!file_.IsFull()) return;
  const auto aside = file_.PutAside();
  if (!aside) {
    Log("Monitoring file is nearly full and cannot be put aside; " + CleanName(aside.error().text));
    return;
  }
  begins_session_ = true;
  scorer_->BeginFile();  // the alerts of what is still there belong into the new file too
  Log("Monitoring file was nearly full and is now " + CleanName(aside.value()));
}

void Agent::Rest(std::int64_t until_ms) {
  while (!parts_.stop_requested()) {
    const std::int64_t left = until_ms - parts_.clock.MonotonicMs();
    if (left <= 0) return;
    parts_.clock.Sleep(std::min(left, kSliceMs));
  }
}

void Agent::Log(const std::string& message) {
  const std::string line = std::to_string(parts_.clock.NowUtc()) + "," + host_name_ + "," +
                           std::to_string(parts_.own_pid) + "," + message + "\r\n";
  // A log that cannot be written stops nothing: the monitoring file is what counts.
  const auto status = parts_.files.Append(log_path_, line);
  if (!status && !failing_) Complain("cannot write KorvessaEventLog.kvl: " + status.error().text);
}

void Agent::Complain(const std::string& message) {
  parts_.errors << "zendrix-agent: " << message << std::endl;
}

}  // namespace zendrix::agent
