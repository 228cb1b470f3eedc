#include "mail/message.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <string_view>

#include "core/text_rules.h"
#include "mail/mime.h"
#include "platform/windows_1252.h"

namespace zendrix::mail {
namespace {

constexpr std::size_t kSubjectWidth = 120;
constexpr std::size_t kMostPairs = 12;

// Windows-1252 as UTF-8. The bytes without a character stand for controls, and a mail needs none of them.
std::string Text(std::string_view bytes) {
  std::string plain(bytes);
  std::replace_if(
      plain.begin(), plain.end(),
      [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return code < 32 || code == 0x7F || code == 0x81 || code == 0x8D || code == 0x8F || code == 0x90 ||
               code == 0x9D;
      },
      '?');
  return platform::Utf8FromBytes(plain);
}

std::string Number(std::uint64_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// For the part of a Message-ID behind its "@".
std::string DomainOf(const std::string& address) {
  return address.substr(address.find('@') + 1);
}

std::string Percent(const Alert& alert) {
  return std::to_string(RiskPercent(alert)) + " %";
}

// What the alert is about, in a few words: the first thing that was seen.
std::string SubjectOf(const Alert& alert) {
  return alert.pairs.empty() ? "" : alert.pairs.front().second;
}

void Tell(const Alert& alert, std::string& body) {
  body += "Time: " + HeaderDate(alert.second) + "\n";
  body += "Risk: " + Percent(alert) + "\n";
  if (!alert.facts.empty() && alert.facts != "none") body += "Why:  " + Text(alert.facts) + "\n";
  body += "Seen:\n";
  for (std::size_t i = 0; i < std::min(alert.pairs.size(), kMostPairs); ++i) {
    body += "  " + Text(alert.pairs[i].first) + ": " + Text(alert.pairs[i].second) + "\n";
  }
  if (alert.pairs.size() > kMostPairs) {
    body += "  and " + std::to_string(alert.pairs.size() - kMostPairs) + " more\n";
  }
}

// The places of those that are told, in the order of time.
std::vector<std::size_t> Listed(const std::vector<Alert>& alerts) {
  std::vector<std::size_t> places(alerts.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::stable_sort(places.begin(), places.end(),
                   [&](std::size_t a, std::size_t b) { return alerts[a].risk > alerts[b].risk; });
  places.resize(std::min(places.size(), kMostListed));
  std::sort(places.begin(), places.end());
  return places;
}

std::string Mail(const MailSettings& settings, const std::string& subject, const std::string& body,
                 const std::string& id, std::int64_t now_utc) {
  std::string text;
  const auto header = [&](const char* name, const std::string& value) {
    text.append(name).append(": ").append(value).append("\r\n");
  };
  header("From", "Zendrix <" + settings.from + ">");
  header("To", "<" + settings.to + ">");
  header("Subject", HeaderText(subject));
  header("Date", HeaderDate(now_utc));
  header("Message-ID", "<" + id + "@" + DomainOf(settings.from) + ">");
  header("Auto-Submitted", "auto-generated");
  header("MIME-Version", "1.0");
  header("Content-Type", "text/plain; charset=utf-8");
  header("Content-Transfer-Encoding", "quoted-printable");
  return text + "\r\n" + QuotedPrintable(body);
}

std::string Shortened(const std::string& bytes) {
  return bytes.size() <= kSubjectWidth ? bytes : bytes.substr(0, kSubjectWidth - 3) + "...";
}

}  // namespace

std::string ComposeMail(const MailSettings& settings, const Contents& contents, std::int64_t now_utc,
                        platform::FamilyLibraries& family) {
  const auto& alerts = contents.alerts;
  std::string keys;
  std::set<std::string> hosts;
  for (const Alert& alert : alerts) {
    keys += alert.host + " " + alert.Key() + "\n";
    hosts.insert(alert.host);
  }
  keys += std::to_string(contents.unlisted);
  const std::string where = hosts.size() == 1 ? *hosts.begin() : "";
  const std::string on = where.empty() ? "" : " on " + where;
  const std::uint64_t total = alerts.size() + contents.unlisted;

  std::string subject;
  std::string body;
  if (total == 1 && !alerts.empty()) {
    const std::string about = SubjectOf(alerts.front());
    subject = "Zendrix: alert" + on + " (risk " + Percent(alerts.front()) + ")" +
              (about.empty() ? "" : ": " + about);
    body = "Zendrix raised an alert" + Text(on) + ".\n\n";
  } else {
    subject = "Zendrix: " + Number(total, "alert", "alerts") + on;
    body = "Zendrix raised " + Number(total, "alert", "alerts") + Text(on) + ".\n\n";
  }
  const auto listed = Listed(alerts);
  for (const std::size_t place : listed) {
    if (where.empty()) body += "Computer: " + Text(alerts[place].host) + "\n";
    Tell(alerts[place], body);
    body += "\n";
  }
  if (total > listed.size()) {
    body += "And " + Number(total - listed.size(), "alert", "alerts") +
            " more, which the console on that computer lists.\n\n";
  }
  body += "The console on that computer explains it, and lets you block or allow it.\n";
  return Mail(settings, Text(Shortened(subject)), body, "alert." + family.HashBytes(keys).substr(0, 32),
              now_utc);
}

std::string ComposeTrial(const MailSettings& settings, const std::string& host, std::int64_t now_utc,
                         platform::FamilyLibraries& family) {
  const std::string id = "trial." + family.HashBytes(host + std::to_string(now_utc)).substr(0, 32);
  return Mail(settings, "Zendrix: mail from " + Text(host),
              "This mail was asked for, to see whether alerts of " + Text(host) + " arrive. They do.\n", id,
              now_utc);
}

}  // namespace zendrix::mail
