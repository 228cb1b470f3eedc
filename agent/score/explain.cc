#include "agent/score/explain.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kListed = 20;

std::string Plain(std::string text) {
  for (char& byte : text) byte = byte >= ' ' && byte <= '~' ? byte : '?';
  return text;
}

std::string TimeText(std::int64_t second) {
  const std::time_t moment = second;
  std::tm parts = {};
  std::array<char, 40> text = {};
  if (gmtime_r(&moment, &parts) == nullptr) return std::to_string(second);
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S UTC", &parts);
  return text.data();
}

std::string Padded(std::string text, std::size_t width) {
  return text.size() < width ? text + std::string(width - text.size(), ' ') : text;
}

std::string DaysText(const Fact& fact) {
  if (fact.hard) return "hard: raises an alert at any time";
  if (fact.days == 0) return "never seen before today";
  return "full weight " + Decimal(fact.full_weight, 2) + ", seen on " + std::to_string(fact.days) +
         (fact.days == 1 ? " day" : " days") + " before";
}

std::string StateText(const AlertRecord& record) {
  const std::string limit = Decimal(record.needed, 4);
  switch (record.state) {
    case AlertState::kRaised: {
      const bool is_hard =
          std::any_of(record.facts.begin(), record.facts.end(), [](const Fact& fact) { return fact.hard; });
      return is_hard ? "It is an alert because of a hard fact."
                     : "It is an alert: at that time one might leave a doubt of " + limit + " at most.";
    }
    case AlertState::kHeldBack:
      return "It was stored and is no alert: at that time one might leave a doubt of " + limit + " at most.";
    case AlertState::kLearning:
      return "It was stored and is no alert: the Agent had watched for " +
             std::to_string(record.days_watched) + (record.days_watched == 1 ? " day" : " days") +
             " and was learning.";
    case AlertState::kAllowed:
      return "It was stored and is no alert: you had allowed it.";
  }
  return "";
}

}  // namespace

std::string ExplainAlert(const AlertRecord& record) {
  constexpr std::size_t kTextWidth = 69;
  std::string text = Plain(record.subject) + "\n";
  text +=
      TimeText(record.second) + " (" + std::to_string(record.second) + "), code " + Plain(record.code) + "\n";
  text += "risk " + Decimal(record.risk, 4) + " after " + std::to_string(record.days_watched) +
          (record.days_watched == 1 ? " day" : " days") + " of watching\n";
  if (!record.package.empty()) text += "file of the package " + Plain(record.package) + "\n";
  if (!record.sha256.empty()) text += "SHA-256 " + Plain(record.sha256) + "\n";
  text += "\nweight  what speaks for it\n";
  for (const Fact& fact : record.facts) {
    text +=
        "  " + Decimal(fact.weight, 2) + "  " + Padded(Plain(fact.text), kTextWidth) + "  " + DaysText(fact);
    if (fact.count > 1) text += ", " + std::to_string(fact.count) + " times";
    text += "\n";
  }
  text += "\nEach takes its share of the doubt: ";
  for (std::size_t i = 0; i < record.facts.size(); ++i)
    text += (i == 0 ? "" : " x ") + Decimal(1 - record.facts[i].weight, 2);
  text +=
      " = " + Decimal(record.doubt, 6) + ".\nThe risk is 1 - " + Decimal(record.doubt, 6) + ", at most 0.99";
  if (record.package_factor < 1)
    text += ", times " + Decimal(record.package_factor, 1) +
            " for an unchanged file of a package being installed";
  return text + ".\n" + StateText(record) + "\n";
}

std::string ListAlerts(const std::vector<AlertRecord>& newest_first) {
  std::string text;
  for (const AlertRecord& record : newest_first) {
    const char* const kind = record.state == AlertState::kRaised ? "alert " : "stored";
    text += std::to_string(record.second) + "  " + TimeText(record.second) + "  " + kind + "  " +
            Decimal(record.risk, 2) + "  " + Plain(record.subject) + "\n";
  }
  return text.empty() ? "There are no alerts yet.\n" : text;
}

int Explain(const std::string& path, const std::string& id, std::string& text) {
  const auto database = Database::Open(path, Database::Use::kReadOnly);
  if (!database) {
    text = "Nothing is known of alerts; " + Plain(path) + " cannot be read.\n";
    return 1;
  }
  const auto records = ReadAlerts(database.value(), id.empty() ? kListed : AlertBook::kMostAlerts);
  if (id.empty()) {
    text = ListAlerts(records);
    return 0;
  }
  const AlertRecord* const record = FindAlert(records, id);
  text = record == nullptr ? "There is no alert " + Plain(id) + ".\n" : ExplainAlert(*record);
  return record == nullptr ? 1 : 0;
}

}  // namespace zendrix::agent
