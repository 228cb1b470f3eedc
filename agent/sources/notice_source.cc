#include "agent/sources/notice_source.h"

#include <algorithm>
#include <utility>

#include "agent/host/observe_accounts.h"
#include "agent/host/observe_autorun.h"
#include "agent/host/observe_folders.h"
#include "agent/host/observe_host.h"

namespace zendrix::agent {
namespace {

constexpr std::array<std::string_view, 4> kNoticedMonitors = {monitor::kAccounts, monitor::kLogins,
                                                              monitor::kAutorun, monitor::kFolders};
constexpr int kMostReads = 16;  // of one Drain, 64 KB each
constexpr std::size_t kMostNamed = 5000;
constexpr std::int64_t kShare = 50;  // a look is paid for by this many times its length without one

}  // namespace

NoticeSource::NoticeSource(HostView& host, platform::Clock& clock, std::unique_ptr<NoticeStream> stream,
                           std::string refusal)
    : host_(host), clock_(clock), stream_(std::move(stream)), refusal_(std::move(refusal)) {}

std::span<const std::string_view> NoticeSource::Monitors() const {
  return kNoticedMonitors;
}

SourceLevel NoticeSource::level() const {
  if (!stream_) return {Level::kNone, "inotify", refusal_};
  std::string reason;
  const auto add = [&](const std::string& more) { reason += (reason.empty() ? "" : "; ") + more; };
  if (unwatched_ > 0)
    add(std::to_string(unwatched_) + " folders are looked at once a minute: " + why_unwatched_);
  for (const std::string& folder : unreadable_) add(folder + " may not be read");
  if (has_links_) add("what links among the autorun entries lead to is looked at once a minute");
  if (differences_.left_out() > 0)
    add(std::to_string(differences_.left_out()) + " entries are too many to look at, or may not be read");
  return {Level::kNotices, "inotify", reason};
}

void NoticeSource::Drain(std::vector<Observation>& into) {
  if (!stream_) return;
  const std::int64_t now = clock_.MonotonicMs();
  for (int i = 0; i < kMostReads; ++i) {
    const std::string bytes = stream_->Read();
    if (bytes.empty()) break;
    for (const Notice& notice : ParseNotices(bytes)) Take(notice, now);
  }
  if (!next_look_ms_ || now >= *next_look_ms_) {
    next_look_ms_ = now + kLookEveryMs;
    must_arm_ = true;
    for (const std::string_view name : kNoticedMonitors)
      pending_[name] = {now - kLongestMs, now - kLongestMs};
  }
  // Armed before the look, so that what changes meanwhile is told.
  if (std::exchange(must_arm_, false)) Arm();
  if (now < not_before_ms_) return;
  std::vector<std::string_view> due;
  for (const auto& [name, pending] : pending_) {
    if (now - pending.last_ms >= kQuietMs || now - pending.first_ms >= kLongestMs) due.push_back(name);
  }
  if (due.empty()) return;
  Look(due, into);
  const std::int64_t end = clock_.MonotonicMs();
  not_before_ms_ = end + kShare * (end - now);
}

void NoticeSource::Take(const Notice& notice, std::int64_t now_ms) {
  if (notice.overflow) {
    for (const std::string_view name : kNoticedMonitors) Note(name, now_ms);
    must_arm_ = true;
    return;
  }
  const auto folder = watched_.find(notice.folder);
  if (folder == watched_.end()) return;
  for (const Wanted& wanted : folder->second) {
    if (wanted.in_temporary && !notice.name.empty() && named_.size() < kMostNamed)
      named_.insert(wanted.folder + "/" + notice.name);
    if (notice.moved || wanted.name.empty() || wanted.name == notice.name) {
      Note(wanted.monitor, now_ms);
      must_arm_ = must_arm_ || notice.moved || wanted.is_above;
    }
  }
  // Units that another one wants are links in folders of their own.
  const bool is_units = notice.name.ends_with(".wants") || notice.name.ends_with(".requires") ||
                        notice.name.ends_with("service.d");
  must_arm_ = must_arm_ || is_units || notice.name == "passwd";
}

void NoticeSource::Note(std::string_view monitor_name, std::int64_t now_ms) {
  const auto [at, is_new] = pending_.try_emplace(monitor_name, Pending{now_ms, now_ms});
  at->second.last_ms = now_ms;
}

void NoticeSource::Arm() {
  watched_.clear();
  unwatched_ = 0;
  unreadable_.clear();
  Want("/etc", monitor::kAccounts, "passwd");
  Want("/etc", monitor::kFolders, "ld.so.preload");
  Want("/run", monitor::kLogins, "utmp");
  for (const std::string& path : FilesLookedAt())
    Want(path.substr(0, path.rfind('/')), monitor::kFolders, path.substr(path.rfind('/') + 1));
  for (const std::string& folder : FoldersLookedAt()) Want(folder, monitor::kFolders, "");
  for (const std::string& folder : AutorunFolders(host_, ReadAccounts(host_))) {
    Want(folder, monitor::kAutorun, "");
  }
}

void NoticeSource::Want(const std::string& folder, std::string_view monitor_name, const std::string& name) {
  std::string path = folder;
  Wanted wanted = {monitor_name, name, folder, false, IsTemporaryFolder(folder) && name.empty()};
  for (;;) {
    const auto number = stream_->Watch(path);
    if (number) {
      watched_[number.value()].push_back(wanted);
      return;
    }
    const std::size_t slash = path.rfind('/');
    if (number.error().kind != platform::ErrorKind::kNotFound || slash == 0 || slash == std::string::npos) {
      // What may not be entered cannot be looked at either. Of a system folder that is worth a word; the
      // folders of other people are closed on every computer.
      if (number.error().kind == platform::ErrorKind::kPermissionDenied) {
        if (monitor_name == monitor::kFolders) unreadable_.push_back(path);
        return;
      }
      ++unwatched_;
      why_unwatched_ = number.error().text;
      return;
    }
    wanted = {monitor_name, path.substr(slash + 1), path.substr(0, slash), true, false};
    path.resize(slash);
  }
}

void NoticeSource::Look(const std::vector<std::string_view>& monitors, std::vector<Observation>& into) {
  for (const std::string_view name : monitors) pending_.erase(name);
  // What was named and is gone by now needs no further look.
  std::erase_if(named_, [&](const std::string& path) { return !host_.Look(path); });
  Shortfall missed;
  auto items = ObserveItems(host_, 0, monitors, named_, &missed);
  if (std::find(monitors.begin(), monitors.end(), monitor::kAutorun) != monitors.end()) {
    has_links_ = std::any_of(items.begin(), items.end(), [&](const Item& item) {
      const auto facts =
          item.monitor == monitor::kAutorun ? host_.Look(item.place) : std::optional<EntryFacts>();
      return facts && facts->kind == EntryKind::kLink;
    });
  }
  differences_.Take(host_, monitors, std::move(items), missed, into);
}

std::unique_ptr<NoticeSource> MakeNoticeSource(HostView& host, platform::Clock& clock) {
  auto stream = OpenInotify();
  if (!stream) return std::make_unique<NoticeSource>(host, clock, nullptr, stream.error().text);
  return std::make_unique<NoticeSource>(host, clock, std::move(stream.value()), "");
}

}  // namespace zendrix::agent
