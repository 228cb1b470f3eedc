#include "agent/record/recording.h"

#include <algorithm>
#include <utility>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::int64_t kOnceASecond = 1000;
constexpr std::int64_t kSecondsOfHour = 3600;
constexpr char kOldLogFile[] = "KorvessaEventLog-old.kvl";
constexpr char kNewLogFile[] = "KorvessaEventLog-new.kvl";

std::string KeyOfRow(const Event& event) {
  return std::string(event.item.monitor) + "\n" + event.item.description;
}

void Append(std::vector<Event>& events, std::vector<Event> more) {
  events.insert(events.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

}  // namespace

Recording::Recording(platform::Files& files, platform::Clock& clock, std::ostream& errors, std::string folder,
                     Form form, Author author, MakeLike make_like)
    : files_(files),
      clock_(clock),
      errors_(errors),
      folder_(std::move(folder)),
      form_(form),
      author_(std::move(author)),
      make_like_(std::move(make_like)),
      log_path_(platform::JoinPath(folder_, "KorvessaEventLog.kvl")),
      file_(files, clock, platform::JoinPath(folder_, "KorvessaMonitoring.kvl"), form) {}

bool Recording::Open() {
  if (!files_.FolderExists(folder_)) {
    Complain("no such folder: " + folder_);
    return false;
  }
  const auto status = file_.Open();
  if (!status) Complain("cannot take up KorvessaMonitoring.kvl: " + status.error().text);
  return status.ok();
}

bool Recording::WantsSession() {
  const std::int64_t now = clock_.MonotonicMs();
  if (now >= next_check_ms_ || (HasWaiting() && MayWrite())) {
    next_check_ms_ = now + kOnceASecond;
    if (file_.WasReplaced()) {
      file_.Forget();
      wants_session_ = true;
      Log("Monitoring file was removed or replaced; a new session begins");
    }
  }
  // An event makes at most two rows, an alert three.
  const std::size_t rows = 2 * waiting_.events.size() + 3 * waiting_.alerts.size();
  if ((file_.IsFull() || file_.IsFarAhead() || !file_.HasRoomFor(rows)) && now >= next_put_aside_ms_) {
    next_put_aside_ms_ = now + kOnceASecond;
    PutAside();
  }
  return wants_session_;
}

void Recording::PutAside() {
  const std::int64_t ahead = file_.IsFarAhead() ? file_.LastSecondWritten() - clock_.NowUtc() : 0;
  const std::string reason = ahead > 0 ? "is far ahead of the clock" : "is nearly full";
  const auto aside = file_.PutAside();
  if (!aside) {
    if (!put_aside_failing_) {
      Log("Monitoring file " + reason + " and cannot be put aside; " + CleanText(aside.error().text));
    }
    put_aside_failing_ = true;
    return;
  }
  put_aside_failing_ = false;
  wants_session_ = true;
  Log("Monitoring file " + reason + " and is now " + CleanName(aside.value()));
  if (ahead > 0) {
    TellInSession("a new file begins - the last time in the one before was " +
                  std::to_string(ahead / kSecondsOfHour) + " h ahead of the clock");
  }
  if (const std::size_t count = file_.DropOldest(); count > 0)
    Log("Oldest files put aside were deleted; " + std::to_string(count));
}

void Recording::TellInSession(const std::string& message) {
  Item item;
  item.monitor = monitor::kAgent;
  item.subject = message;
  item.description = message;
  own_.push_back(HappenedEvent(item));
  Log(message);
}

void Recording::Begin(std::vector<Event> present) {
  std::set<std::string> there;
  for (const Event& event : present) there.insert(KeyOfRow(event));
  // What merely happened, or came and went again, is not told by what is there now.
  std::vector<Event> untold = std::move(waiting_.events);
  if (waiting_.begins_session) {
    std::erase_if(untold, [](const Event& event) { return event.kind == EventKind::kPresent; });
  }
  Append(untold, std::exchange(later_, {}));
  std::set<std::string> came;
  for (const Event& event : untold) {
    if (event.kind == EventKind::kAdded) came.insert(KeyOfRow(event));
  }
  std::erase_if(untold, [&](const Event& event) {
    const std::string key = KeyOfRow(event);
    return event.kind == EventKind::kMeasured || there.contains(key) ||
           (event.kind == EventKind::kRemoved && !came.contains(key));
  });
  waiting_.events = std::move(present);
  waiting_.begins_session = true;
  wants_session_ = false;
  came_.clear();
  in_later_.clear();
  if (given_up_ > 0) {
    TellInSession(std::to_string(std::exchange(given_up_, 0)) +
                  " events could not be written and were given up");
  }
  Append(waiting_.events, std::exchange(own_, {}));
  Add(untold);
}

void Recording::Add(const std::vector<Event>& events) {
  for (const Event& event : events) {
    std::string key = KeyOfRow(event);
    // The console looks backward for an alert's rows and must find the coming of a thing, not its going, so
    // that a thing that came goes in the next batch.
    const bool goes_again = event.kind == EventKind::kRemoved && came_.contains(key);
    if (goes_again || in_later_.contains(key)) {
      in_later_.insert(std::move(key));
      later_.push_back(event);
      continue;
    }
    if (event.kind == EventKind::kAdded) came_.insert(std::move(key));
    waiting_.events.push_back(event);
  }
  if (waiting_.events.size() + later_.size() > kMostWaiting) GiveUpWaiting();
}

void Recording::AddAlerts(const std::vector<Alert>& alerts) {
  waiting_.alerts.insert(waiting_.alerts.end(), alerts.begin(), alerts.end());
}

void Recording::GiveUpWaiting() {
  given_up_ += waiting_.events.size() + later_.size();
  waiting_ = {};
  later_.clear();
  in_later_.clear();
  came_.clear();
  wants_session_ = true;
}

bool Recording::HasWaiting() const {
  return waiting_.begins_session || !waiting_.events.empty() || !waiting_.alerts.empty() || !later_.empty();
}

bool Recording::MayWrite() const {
  return file_.MayWrite() && (!failing_ || clock_.MonotonicMs() >= retry_ms_);
}

bool Recording::IsDue() const {
  if (!HasWaiting() || !MayWrite()) return false;
  return hurry_ || waiting_.begins_session || !waiting_.alerts.empty() || file_.MayWriteInTime();
}

std::optional<std::int64_t> Recording::Write(const std::vector<Alert>& alerts) {
  if (!HasWaiting() && alerts.empty()) return {};
  Batch batch;
  batch.begins_session = waiting_.begins_session;
  std::swap(batch.events, waiting_.events);
  std::swap(batch.alerts, waiting_.alerts);
  const std::size_t own_alerts = batch.alerts.size();
  batch.alerts.insert(batch.alerts.end(), alerts.begin(), alerts.end());
  std::stable_partition(batch.events.begin(), batch.events.end(),
                        [](const Event& event) { return event.kind == EventKind::kRemoved; });
  Stamp stamp;
  const bool spread = form_ == Form::kHome && batch.alerts.size() > 1;
  stamp.seconds = file_.NextSecond(spread ? static_cast<std::int64_t>(batch.alerts.size()) - 1 : 0);
  stamp.host = author_.host;
  stamp.thread = author_.thread;
  const BatchText text = RenderBatch(form_, stamp, batch);
  const auto status = file_.Append(text);
  if (!status) {
    if (!failing_) {
      Complain("cannot write KorvessaMonitoring.kvl: " + status.error().text);
      Log("Monitoring file cannot be written; " + CleanText(status.error().text));
    }
    failing_ = true;
    retry_ms_ = clock_.MonotonicMs() + kOnceASecond;
    batch.alerts.resize(own_alerts);
    std::swap(batch.events, waiting_.events);
    std::swap(batch.alerts, waiting_.alerts);
    return {};
  }
  if (failing_) Log("Monitoring file can be written again");
  failing_ = false;
  rows_ += text.rows;
  if (batch.begins_session) {
    const auto items = std::count_if(batch.events.begin(), batch.events.end(), [](const Event& event) {
      return event.kind == EventKind::kPresent && event.item.monitor != monitor::kAgent;
    });
    Log("Session began; " + std::to_string(items) + " items; " + std::to_string(batch.alerts.size()) +
        " alerts");
  }
  has_session_ = has_session_ || batch.begins_session;
  waiting_.begins_session = false;
  hurry_ = false;
  came_.clear();
  in_later_.clear();
  Add(std::exchange(later_, {}));
  return stamp.seconds;
}

void Recording::Log(const std::string& message) {
  const std::string line =
      std::to_string(clock_.NowUtc()) + "," + author_.host + "," + author_.thread + "," + message + "\r\n";
  const auto size = files_.Size(log_path_);
  if (size && size.value() >= kMostLogBytes) BeginLogAnew();
  // A log that cannot be written stops nothing: the monitoring file is what counts.
  const auto status = files_.Append(log_path_, line);
  if (!status && !log_failing_) Complain("cannot write KorvessaEventLog.kvl: " + status.error().text);
  log_failing_ = !status.ok();
}

// The new one is ready before the one before goes, so that whoever else writes into the log by its name
// hardly ever meets none.
void Recording::BeginLogAnew() {
  const std::string fresh = platform::JoinPath(folder_, kNewLogFile);
  // A kill may have left one.
  static_cast<void>(files_.Remove(fresh));
  const bool has_rights = make_like_ && make_like_(fresh, log_path_);
  // What cannot be renamed grows on.
  if (files_.Rename(log_path_, platform::JoinPath(folder_, kOldLogFile)) && has_rights)
    static_cast<void>(files_.Rename(fresh, log_path_));
}

void Recording::Complain(const std::string& message) {
  errors_ << "zendrix-agent: " << message << std::endl;
}

}  // namespace zendrix::agent
