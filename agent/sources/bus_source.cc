#include "agent/sources/bus_source.h"

#include <array>
#include <utility>

#include "agent/host/observe_accounts.h"

namespace zendrix::agent {
namespace {

constexpr std::array<std::string_view, 1> kToldMonitors = {monitor::kLogins};

Item ItemOf(const BusSession& session) {
  Login login = {session.user, session.line, session.from};
  if (login.user.empty()) login.user = "an unknown user";
  if (login.line.empty()) login.line = "no terminal";
  Item item = LoginItem(login);
  // Several sessions may have no terminal.
  if (session.line.empty()) item.identity = "session " + session.id;
  return item;
}

bool ServesAUser(const BusSession& session) {
  return session.purpose.empty() || session.purpose.starts_with("user");
}

}  // namespace

BusSource::BusSource(platform::Clock& clock, std::function<OpenedBus()> open,
                     std::function<void()> units_changed)
    : clock_(clock), open_(std::move(open)), units_changed_(std::move(units_changed)) {
  Open(clock_.MonotonicMs());
}

std::span<const std::string_view> BusSource::Monitors() const {
  return kToldMonitors;
}

SourceLevel BusSource::level() const {
  if (!stream_) return {Level::kNone, "logind", refusal_};
  return {Level::kNotices, "logind", ""};
}

void BusSource::Open(std::int64_t now_ms) {
  auto opened = open_();
  stream_ = std::move(opened.stream);
  refusal_ = std::move(opened.refusal);
  is_new_ = stream_ != nullptr;
  next_try_ms_ = now_ms + kTryAgainMs;
}

void BusSource::Drain(std::vector<Observation>& into) {
  const std::int64_t now = clock_.MonotonicMs();
  if (!stream_ && now >= next_try_ms_) Open(now);
  if (!stream_) return;
  const auto news = stream_->Read();
  if (std::exchange(is_new_, false)) {
    std::map<std::string, Item> still;
    for (const BusNews& one : news) {
      if (one.kind == BusNews::Kind::kSession && ServesAUser(one.session))
        still.emplace(one.session.id, ItemOf(one.session));
    }
    Forget(still, into);
  }
  for (const BusNews& one : news) Take(one, into);
}

void BusSource::Forget(const std::map<std::string, Item>& still, std::vector<Observation>& into) {
  std::erase_if(sessions_, [&](const auto& known) {
    const auto found = still.find(known.first);
    if (found != still.end() && found->second.description == known.second.description) return false;
    into.push_back({Observation::Kind::kWent, 0, known.second, 0});
    return true;
  });
}

void BusSource::Take(const BusNews& news, std::vector<Observation>& into) {
  switch (news.kind) {
    case BusNews::Kind::kSession: {
      if (!ServesAUser(news.session) || sessions_.contains(news.session.id)) return;
      if (sessions_.size() >= kMostSessions) {
        into.push_back({Observation::Kind::kLost, 0, {}, 1});
        return;
      }
      const auto [at, is_new] = sessions_.emplace(news.session.id, ItemOf(news.session));
      into.push_back({Observation::Kind::kCame, 0, at->second, 0});
      return;
    }
    case BusNews::Kind::kSessionEnded: {
      const auto known = sessions_.extract(news.session.id);
      if (known) into.push_back({Observation::Kind::kWent, 0, known.mapped(), 0});
      return;
    }
    case BusNews::Kind::kUnitsChanged:
      if (units_changed_) units_changed_();
      return;
    case BusNews::Kind::kGone:
      stream_.reset();
      refusal_ = news.reason;
      next_try_ms_ = clock_.MonotonicMs() + kTryAgainMs;
      return;
  }
}

std::unique_ptr<Source> MakeBusSource(platform::Clock& clock, std::function<void()> units_changed) {
  return std::make_unique<BusSource>(clock, OpenSystemBus, std::move(units_changed));
}

}  // namespace zendrix::agent
