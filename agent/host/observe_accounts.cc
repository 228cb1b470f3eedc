#include "agent/host/observe_accounts.h"

#include <algorithm>
#include <utility>

#include "agent/host/text.h"
#include "agent/score/digest.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kTextLimit = 4U << 20U;
constexpr std::uint64_t kFirstPersonalUid = 1000;
constexpr const char* kFailuresFile = "/var/log/btmp";
constexpr std::uint64_t kMostFailures = 2000;  // of one look, read one by one
constexpr std::size_t kMostPlaces = 100;

RuleSet RulesOf(const Account& account) {
  RuleSet rules;
  const bool is_root = account.name == "root";
  if (account.uid == 0 && !is_root) rules.Add(Rule::kSecondRoot);
  const bool may_log_in = IsLoginShell(account.shell);
  if (account.no_password && may_log_in) rules.Add(Rule::kNoPassword);
  if (account.uid > 0 && account.uid < kFirstPersonalUid && may_log_in) {
    rules.Add(Rule::kServiceAccountWithShell);
  }
  return rules;
}

// The terminal server of a desktop writes its display (":0") where a remote computer's name would stand.
bool FromElsewhere(const Login& login) {
  return !login.host.empty() && login.host[0] != ':';
}

std::string PlaceOf(const Login& failure) {
  // The login server writes its service in front of a terminal that it has not got yet: "ssh:notty".
  const bool by_ssh = failure.line.starts_with("ssh");
  std::string where =
      by_ssh ? "sshd" : CleanName(failure.line.empty() ? "an unknown terminal" : failure.line);
  if (FromElsewhere(failure)) where += " from " + CleanName(failure.host);
  return where;
}

}  // namespace

std::vector<Account> ReadAccounts(HostView& host) {
  const auto text = host.ReadText("/etc/passwd", kTextLimit);
  return text ? ParseAccounts(*text) : std::vector<Account>();
}

std::vector<Item> ObserveAccounts(const std::vector<Account>& accounts) {
  std::vector<Item> items;
  for (const Account& account : accounts) {
    Item item;
    item.monitor = monitor::kAccounts;
    if (account.unreadable) {
      item.description = "a line that cannot be read - " + CleanName(account.name);
      item.identity = Sha256Of(account.name);
      item.subject = "account " + item.description;
      items.push_back(std::move(item));
      continue;
    }
    item.description = CleanName(account.name);
    item.rules = RulesOf(account);
    // An account that gains rights or loses its password is news.
    item.identity = std::to_string(item.rules.bits());
    item.subject = "account " + item.description;
    items.push_back(std::move(item));
  }
  return items;
}

Item LoginItem(const Login& login) {
  Item item;
  item.monitor = monitor::kLogins;
  const std::string user = CleanName(login.user);
  item.subject = "login of " + user;
  item.identity = login.line;
  if (FromElsewhere(login)) {
    item.description = user + " from " + CleanName(login.host);
    item.rules.Add(login.user == "root" ? Rule::kLoginAsRootFromElsewhere : Rule::kLoginFromElsewhere);
  } else {
    item.description = user + " on " + CleanName(login.line);
  }
  return item;
}

std::vector<Item> ObserveLogins(HostView& host) {
  const auto bytes = host.ReadText("/run/utmp", kTextLimit);
  std::vector<Item> items;
  if (!bytes) return items;
  for (const Login& login : ParseLogins(*bytes)) items.push_back(LoginItem(login));
  return items;
}

std::optional<std::uint64_t> CountFailedLogins(HostView& host) {
  const auto facts = host.Look(kFailuresFile);
  if (!facts || facts->kind != EntryKind::kFile || facts->size < 0) return {};
  return static_cast<std::uint64_t>(facts->size) / kLoginRecordSize;
}

std::vector<FailedLogins> ReadFailedLogins(HostView& host, std::uint64_t before, std::uint64_t now) {
  std::vector<FailedLogins> places;
  const std::uint64_t from = now < before ? 0 : before;
  const std::uint64_t first = std::max(from, now - std::min(now, kMostFailures));
  if (first >= now) return places;
  const auto bytes = host.ReadFrom(kFailuresFile, first * kLoginRecordSize,
                                   static_cast<std::size_t>(now - first) * kLoginRecordSize);
  FailedLogins elsewhere = {"", now - from};
  for (const Login& failure : bytes ? ParseFailures(*bytes) : std::vector<Login>()) {
    const std::string where = PlaceOf(failure);
    auto place = std::find_if(places.begin(), places.end(),
                              [&](const FailedLogins& known) { return known.where == where; });
    if (place == places.end()) {
      if (places.size() >= kMostPlaces) continue;
      place = places.insert(places.end(), {where, 0});
    }
    ++place->count;
    --elsewhere.count;
  }
  if (elsewhere.count > 0) places.push_back(std::move(elsewhere));
  return places;
}

}  // namespace zendrix::agent
