#include "agent/score/alert_book.h"

#include <algorithm>
#include <charconv>

namespace zendrix::agent {
namespace {

std::string NumbersText(const std::set<int>& numbers) {
  std::string text;
  for (const int number : numbers) text += std::to_string(number) + " ";
  return text;
}

std::set<int> NumbersOf(std::string_view text) {
  std::set<int> numbers;
  while (!text.empty()) {
    int number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc()) break;
    numbers.insert(number);
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    if (!text.empty()) text.remove_prefix(1);
  }
  return numbers;
}

AlertRecord RecordOf(const Statement& row) {
  AlertRecord record;
  record.second = row.Number(0);
  record.code = row.Text(1);
  record.change = row.Text(2);
  record.subject = row.Text(3);
  record.sha256 = row.Text(4);
  record.risk = row.Real(5);
  record.doubt = row.Real(6);
  record.needed = row.Real(7);
  record.package_factor = row.Real(8);
  record.days_watched = static_cast<int>(row.Number(9));
  record.state = static_cast<AlertState>(row.Number(10));
  record.package = row.Text(11);
  record.number = row.Number(12);
  return record;
}

void ReadFacts(const Database& database, AlertRecord& record) {
  Statement rows = database.Prepare(
      "SELECT number, text, weight, full_weight, days, count, hard, topic FROM facts WHERE alert = ?1 "
      "ORDER BY position");
  rows.Bind(1, record.number);
  while (rows.Step() == Statement::Outcome::kRow) {
    Fact fact;
    fact.number = static_cast<int>(rows.Number(0));
    fact.text = rows.Text(1);
    fact.weight = rows.Real(2);
    fact.full_weight = rows.Real(3);
    fact.days = static_cast<int>(rows.Number(4));
    fact.count = static_cast<int>(rows.Number(5));
    fact.hard = rows.Number(6) != 0;
    fact.topic = static_cast<Topic>(rows.Number(7));
    record.facts.push_back(std::move(fact));
  }
}

bool WriteRecord(Database& database, const AlertRecord& record) {
  Statement put = database.Prepare(
      "INSERT OR REPLACE INTO alerts (second, code, change, subject, sha256, risk, doubt, needed, "
      "package_factor, "
      "days_watched, state, package, number) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, "
      "?13)");
  put.Bind(1, record.second).Bind(2, record.code).Bind(3, record.change).Bind(4, record.subject);
  put.Bind(5, record.sha256).Bind(6, record.risk).Bind(7, record.doubt).Bind(8, record.needed);
  put.Bind(9, record.package_factor).Bind(10, static_cast<std::int64_t>(record.days_watched));
  put.Bind(11, static_cast<std::int64_t>(record.state)).Bind(12, record.package);
  put.Bind(13, record.number);
  if (!put.Run()) return false;
  Statement fact = database.Prepare(
      "INSERT OR REPLACE INTO facts (alert, position, number, text, weight, full_weight, days, count, hard, "
      "topic) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10)");
  std::int64_t position = 0;
  for (const Fact& one : record.facts) {
    fact.Bind(1, record.number).Bind(2, position++).Bind(3, static_cast<std::int64_t>(one.number));
    fact.Bind(4, one.text).Bind(5, one.weight).Bind(6, one.full_weight);
    fact.Bind(7, static_cast<std::int64_t>(one.days)).Bind(8, static_cast<std::int64_t>(one.count));
    fact.Bind(9, static_cast<std::int64_t>(one.hard)).Bind(10, static_cast<std::int64_t>(one.topic));
    if (!fact.Run()) return false;
  }
  return true;
}

std::set<int> HardOf(const AlertRecord& record) {
  std::set<int> numbers;
  for (const Fact& fact : record.facts) {
    if (fact.hard) numbers.insert(fact.number);
  }
  return numbers;
}

}  // namespace

AlertBook::AlertBook(Keeper& keeper) : keeper_(keeper), generation_(keeper.generation()) {
  Load();
}

std::vector<AlertRecord> ReadAlerts(const Database& database, std::size_t count) {
  std::vector<AlertRecord> records;
  Statement rows = database.Prepare(
      "SELECT second, code, change, subject, sha256, risk, doubt, needed, package_factor, days_watched, "
      "state, "
      "package, number FROM alerts ORDER BY number DESC LIMIT ?1");
  rows.Bind(1, static_cast<std::int64_t>(count));
  while (rows.Step() == Statement::Outcome::kRow) records.push_back(RecordOf(rows));
  for (AlertRecord& record : records) ReadFacts(database, record);
  return records;
}

const AlertRecord* FindAlert(const std::vector<AlertRecord>& newest_first, std::string_view id) {
  constexpr std::size_t kFewestDigits = 6;
  std::int64_t second = 0;
  const auto read = std::from_chars(id.data(), id.data() + id.size(), second);
  const bool is_second = read.ec == std::errc() && read.ptr == id.data() + id.size();
  for (const AlertRecord& record : newest_first) {
    if (is_second && record.second == second && record.state == AlertState::kRaised) return &record;
  }
  for (const AlertRecord& record : newest_first) {
    if (is_second && record.second == second) return &record;
  }
  for (const AlertRecord& record : newest_first) {
    if (id.size() >= kFewestDigits && record.code.find(id) != std::string::npos) return &record;
  }
  return nullptr;
}

void AlertBook::Load() {
  for (AlertRecord& record : ReadAlerts(keeper_.database(), kMostAlerts))
    records_.push_front(std::move(record));
  Statement decided =
      keeper_.database().Prepare("SELECT code, block, sha256, hard, until FROM decisions LIMIT ?1");
  decided.Bind(1, static_cast<std::int64_t>(kMostDecisions));
  while (decided.Step() == Statement::Outcome::kRow) {
    decisions_[decided.Text(0)] = {decided.Number(1) != 0, decided.Text(2), NumbersOf(decided.Text(3)),
                                   decided.Number(4)};
  }
  CountBlocks();
}

void AlertBook::CountBlocks() {
  blocks_ = static_cast<std::size_t>(
      std::count_if(decisions_.begin(), decisions_.end(), [](const auto& one) { return one.second.block; }));
}

void AlertBook::Add(AlertRecord record) {
  record.number = records_.empty() ? 1 : records_.back().number + 1;
  records_.push_back(std::move(record));
  ++unsaved_;
  if (records_.size() <= kMostAlerts) return;
  dropped_.push_back(records_.front().number);
  records_.pop_front();
  unsaved_ = std::min(unsaved_, records_.size());
  if (dropped_.size() > kMostAlerts)
    dropped_.clear();  // the file cannot be written; reading it drops them too
}

std::optional<Decision> AlertBook::DecisionOn(const std::string& code) const {
  const auto found = decisions_.find(code);
  if (found == decisions_.end()) return {};
  return found->second;
}

bool AlertBook::Decide(const std::string& code, bool block) {
  const auto known = decisions_.find(code);
  if (known != decisions_.end() && known->second.block == block) return false;
  if (known == decisions_.end() && decisions_.size() >= kMostDecisions) return false;
  const auto alert = std::find_if(records_.rbegin(), records_.rend(),
                                  [&](const AlertRecord& record) { return record.code == code; });
  if (alert == records_.rend()) return false;
  decisions_[code] = {block, alert->sha256, HardOf(*alert), alert->second};
  unsaved_decisions_.insert(code);
  CountBlocks();
  return true;
}

std::vector<std::int64_t> AlertBook::SecondsOf(const std::string& code, const Decision& decision) const {
  std::vector<std::int64_t> seconds;
  for (const AlertRecord& record : records_) {
    if (record.code == code && record.state == AlertState::kRaised && record.second <= decision.until)
      seconds.push_back(record.second);
  }
  return seconds;
}

bool AlertBook::WriteAll(Database& database) const {
  for (std::size_t i = records_.size() - unsaved_; i < records_.size(); ++i) {
    if (!WriteRecord(database, records_[i])) return false;
  }
  Statement drop = database.Prepare("DELETE FROM alerts WHERE number = ?1");
  Statement drop_facts = database.Prepare("DELETE FROM facts WHERE alert = ?1");
  for (const std::int64_t number : dropped_) {
    if (!drop.Bind(1, number).Run() || !drop_facts.Bind(1, number).Run()) return false;
  }
  Statement put = database.Prepare(
      "INSERT OR REPLACE INTO decisions (code, block, sha256, hard, until) VALUES (?1, ?2, ?3, ?4, ?5)");
  for (const std::string& code : unsaved_decisions_) {
    const Decision& decision = decisions_.at(code);
    put.Bind(1, code).Bind(2, static_cast<std::int64_t>(decision.block)).Bind(3, decision.sha256);
    if (!put.Bind(4, NumbersText(decision.hard)).Bind(5, decision.until).Run()) return false;
  }
  return true;
}

void AlertBook::Save(std::int64_t utc) {
  if (unsaved_ == 0 && unsaved_decisions_.empty() && dropped_.empty()) return;
  const bool done = keeper_.Write([&](Database& database) { return WriteAll(database); }, utc);
  if (generation_ != keeper_.generation()) {
    generation_ = keeper_.generation();
    unsaved_ = records_.size();
    for (const auto& [code, decision] : decisions_) unsaved_decisions_.insert(code);
  }
  if (!done) return;
  unsaved_ = 0;
  unsaved_decisions_.clear();
  dropped_.clear();
}

}  // namespace zendrix::agent
