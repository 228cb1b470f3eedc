// Accounts, log-ins, what starts by itself, and the folders that intruders like: the kernel tells that
// something changed there, and the source looks at that monitor when it has been quiet for a moment. What
// changed and was put back within that moment is not seen. A folder that does not exist yet is waited for in
// the one above. Once a minute everything is looked at all the same.
//
// It takes no rights: a folder that may not be read cannot be watched either. Looks are rationed: whoever
// keeps a temporary folder busy gets at most a fiftieth of one core.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "agent/host/host_view.h"
#include "agent/sources/differences.h"
#include "agent/sources/notice_stream.h"
#include "agent/sources/source.h"
#include "platform/clock.h"

namespace zendrix::agent {

class NoticeSource : public Source {
 public:
  static constexpr std::int64_t kQuietMs = 50;
  static constexpr std::int64_t kLongestMs = 500;  // of waiting for quiet
  static constexpr std::int64_t kLookEveryMs = 60000;

  // Without a stream there is nothing but the reason. The references outlive the object.
  NoticeSource(HostView& host, platform::Clock& clock, std::unique_ptr<NoticeStream> stream,
               std::string refusal);

  std::span<const std::string_view> Monitors() const override;
  SourceLevel level() const override;
  int Handle() const override { return stream_ ? stream_->Handle() : -1; }
  // What was noticed is looked at when it has been quiet, which nothing tells.
  std::int64_t RestMs() const override { return pending_.empty() ? kQuietRestMs : kDrainMs; }
  void Drain(std::vector<Observation>& into) override;
  // Somebody else says that a monitor's things changed; it is looked at soon, as after a notice.
  void LookSoon(std::string_view monitor_name) { Note(monitor_name, clock_.MonotonicMs()); }

 private:
  struct Wanted {
    std::string_view monitor;
    std::string name;  // the only entry that matters; empty: all do
    std::string folder;
    bool is_above = false;  // the folder wanted lies below and does not exist yet
    bool in_temporary = false;
  };
  struct Pending {
    std::int64_t first_ms = 0;
    std::int64_t last_ms = 0;
  };

  void Arm();
  void Want(const std::string& folder, std::string_view monitor_name, const std::string& name);
  void Note(std::string_view monitor_name, std::int64_t now_ms);
  void Take(const Notice& notice, std::int64_t now_ms);
  void Look(const std::vector<std::string_view>& monitors, std::vector<Observation>& into);

  HostView& host_;
  platform::Clock& clock_;
  std::unique_ptr<NoticeStream> stream_;
  const std::string refusal_;
  std::map<int, std::vector<Wanted>> watched_;
  std::size_t unwatched_ = 0;
  std::string why_unwatched_;
  std::vector<std::string> unreadable_;  // system folders
  bool has_links_ = false;  // of autorun entries: their files lie in folders that are not watched
  bool must_arm_ = true;
  std::map<std::string_view, Pending> pending_;  // by monitor
  Differences differences_;
  std::set<std::string>
      named_;  // files of temporary folders that notices named, for as long as they are there
  std::int64_t not_before_ms_ = 0;
  std::optional<std::int64_t> next_look_ms_;
};

// The one of the running kernel.
std::unique_ptr<NoticeSource> MakeNoticeSource(HostView& host, platform::Clock& clock);

}  // namespace zendrix::agent
