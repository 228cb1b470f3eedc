#include <algorithm>
#include <limits>
#include <random>
#include <utility>

#include "agent/host/distinct_name.h"
#include "agent/host/text.h"
#include "agent/score/alert_book.h"
#include "agent/score/baseline.h"
#include "agent/score/digest.h"
#include "agent/score/evidence.h"
#include "agent/score/identity.h"
#include "agent/score/left_out.h"
#include "agent/score/ration.h"
#include "agent/score/scorer.h"
#include "agent/score/subjects.h"

namespace zendrix::agent {
namespace {

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kInstallingSeconds = 30 * 60;  // for so long a package counts as being installed
constexpr double kBlockedWeight = 0.9;
constexpr std::int64_t kRefusedSeconds = 3600;
constexpr double kLeastQuietRisk = 0.7;  // less is not worth a line
constexpr std::size_t kQuietInAnHour = 20;
constexpr std::int64_t kMessageEverySeconds = 60;
constexpr std::size_t kMostRaised = 5000;

// How many of something in each span of time.
class Pace {
 public:
  Pace(std::int64_t span, std::size_t most) : span_(span), most_(most) {}
  bool Allows(std::int64_t utc) const { return utc / span_ != at_ || count_ < most_; }
  void Count(std::int64_t utc) {
    if (utc / span_ != at_) count_ = 0;
    at_ = utc / span_;
    ++count_;
  }

 private:
  const std::int64_t span_;
  const std::size_t most_;
  std::int64_t at_ = -1;
  std::size_t count_ = 0;
};

// The key of this host's alert codes: made once, kept with the rest.
std::string HostKey(Keeper& keeper, std::int64_t utc) {
  Statement ask = keeper.database().Prepare("SELECT value FROM meta WHERE name = 'key'");
  if (ask.Step() == Statement::Outcome::kRow && !ask.Text(0).empty()) return ask.Text(0);
  ask.Reset();
  std::random_device random;
  std::string bytes;
  for (int i = 0; i < 8; ++i) bytes += std::to_string(random()) + " ";
  const std::string key = Sha256Of(bytes);
  keeper.Write(
      [&](Database& database) {
        return database.Prepare("INSERT OR REPLACE INTO meta (name, value) VALUES ('key', ?1)")
            .Bind(1, key)
            .Run();
      },
      utc);
  return key;
}

bool HasHard(const std::vector<Fact>& facts) {
  return std::any_of(facts.begin(), facts.end(), [](const Fact& fact) { return fact.hard; });
}

// Alerts of one kind have the same heaviest fact, a hard one where there is one. What is to be blocked again
// is a kind of its own.
int KindOf(const AlertRecord& record) {
  int kind = 0;
  std::pair<bool, double> heaviest(false, -1);
  for (const Fact& fact : record.facts) {
    if (fact.number == kBlockedBefore) return kBlockedBefore;
    const std::pair<bool, double> weight(fact.hard, fact.weight);
    if (weight <= heaviest) continue;
    heaviest = weight;
    kind = fact.number;
  }
  return kind;
}

void PutFirst(const std::string& phrase, std::vector<std::string>& phrases) {
  const auto at = std::find(phrases.begin(), phrases.end(), phrase);
  if (at != phrases.end()) {
    std::rotate(phrases.begin(), at, at + 1);
  } else if (!phrases.empty()) {
    phrases.back() = phrase;
    std::rotate(phrases.begin(), phrases.end() - 1, phrases.end());
  }
}

std::set<int> NumbersOf(const std::vector<Fact>& facts) {
  std::set<int> numbers;
  for (const Fact& fact : facts) numbers.insert(fact.number);
  return numbers;
}

bool Covers(const std::set<int>& known, const std::set<int>& numbers) {
  return std::includes(known.begin(), known.end(), numbers.begin(), numbers.end());
}

class BaselineScorer : public Scorer {
 public:
  explicit BaselineScorer(const ScorerParts& parts)
      : settle_ms_(parts.settle_ms),
        keeper_(parts.path, parts.utc),
        key_(HostKey(keeper_, parts.utc)),
        baseline_(keeper_, parts.utc),
        files_(parts.host),
        evidence_(baseline_, files_),
        book_(keeper_) {
    for (const AlertRecord& record : book_.records()) {
      if (record.state != AlertState::kRaised || parts.utc - record.second >= kDay) continue;
      Said& said = said_[record.code];
      said.utc = std::max(said.utc, record.second);
      for (const Fact& fact : record.facts) said.facts.insert(fact.number);
      if (!HasHard(record.facts)) budget_.Spend(record.doubt, record.second);
    }
  }

  ~BaselineScorer() override { Save(last_utc_, true); }

  bool IsKnown(const Item& item) const override { return evidence_.IsKnown(item); }

  std::vector<Alert> Weigh(const std::vector<Event>& events, Moment now) override {
    baseline_.Tick(now.utc);
    for (const Event& event : evidence_.TakePutOff(now)) Take(event, now);
    for (const Event& event : events) Take(event, now);
    auto alerts = Due(now, now.monotonic_ms, Ration::kMostPutOff);
    Save(now.utc, false);
    return alerts;
  }

  bool IsWaiting() const override { return !waiting_.empty() || evidence_.HasPutOff(); }

  std::vector<Alert> Rest(Moment now) override {
    // What was put off is not told any more, but counted.
    auto alerts = Due(now, std::numeric_limits<std::int64_t>::max(), 0);
    Save(now.utc, true);
    return alerts;
  }

  void Raised(const std::vector<Alert>& alerts, std::int64_t first_second, Moment now) override {
    for (std::size_t i = 0; i < alerts.size(); ++i) {
      const auto offer = offers_.find(alerts[i].subject);
      if (offer == offers_.end()) continue;
      Note(offer->second, alerts[i], SecondOfAlert(alerts, i, first_second), now);
    }
  }

  void BeginFile() override {
    // What waits to be told is not forgotten with the file that it would have stood in.
    subjects_.KeepWaiting();
    offers_.clear();
    left_out_.BeginFile();
    written_.clear();
    for (auto& [code, said] : said_) said.in_file = false;
  }

  std::vector<std::string> TakeMessages() override {
    auto messages = keeper_.TakeMessages();
    if (untold_ > 0 && (is_ending_ || last_utc_ >= next_message_utc_ ||
                        last_utc_ < next_message_utc_ - kMessageEverySeconds)) {
      messages.push_back("Too many alerts at once; " + std::to_string(untold_) + " were left out");
      untold_ = 0;
      next_message_utc_ = last_utc_ + kMessageEverySeconds;
    }
    return messages;
  }

  bool Decide(const std::string& code, bool block) override { return book_.Decide(code, block); }

  std::vector<DecidedAlert> Decided() const override {
    std::vector<DecidedAlert> decided;
    for (const auto& [code, decision] : book_.decisions()) {
      for (const std::int64_t second : book_.SecondsOf(code, decision))
        decided.push_back({second, decision.block});
    }
    std::sort(decided.begin(), decided.end(),
              [](const DecidedAlert& a, const DecidedAlert& b) { return a.second < b.second; });
    return decided;
  }

 private:
  // What was last said of a code.
  struct Said {
    std::int64_t utc = 0;
    std::set<int> facts;
    bool in_file = true;   // the present one
    bool refused = false;  // it was to be blocked again, and was not
  };
  struct Offer {
    AlertRecord record;
    std::string subject;
    std::optional<Decision> decision;
    bool is_program = false;   // and no account, file or the like
    bool is_repeated = false;  // told again for a new file
    bool is_blocked_again = false;

    double LeftDoubt() const { return 1 - (1 - record.doubt) * record.package_factor; }
    // Whether it takes from what may be said in a day.
    bool IsPaid() const { return !HasHard(record.facts) && !is_repeated; }
  };

  void Take(const Event& event, Moment now) {
    auto facts = evidence_.Of(event, now);
    if (const auto guessed = evidence_.Guessed()) {
      // Whoever guessed most is told of, not whoever did it last.
      TakeFacts(guessed->item, guessed->subject, {guessed->fact}, event.kind, {}, now);
    }
    const auto blocked = BlockedProcess(event, now.utc);
    if (facts.empty() && !blocked) return;
    // By the host's bytes where there are any: cleaned names of two programs may be equal.
    const Item& item = event.item;
    TakeFacts(item, item.program.empty() ? item.subject : DistinctName(item.program), std::move(facts),
              event.kind, blocked, now);
  }

  void TakeFacts(const Item& item, const std::string& name, std::vector<Fact> facts, EventKind kind,
                 std::optional<std::uint32_t> blocked, Moment now) {
    Subject* const subject = subjects_.At(name, now.monotonic_ms);
    if (subject == nullptr) {
      LeaveOut(std::move(facts), item);
      return;
    }
    if (!item.program.empty()) subject->program = item.program;
    if (item.process != 0) subject->running = {item.inode, item.process};
    subject->is_program = subject->is_program || !item.program.empty() ||
                          item.monitor == monitor::kProcesses || item.monitor == monitor::kPorts ||
                          item.monitor == monitor::kConnections;
    subject->touched_ms = now.monotonic_ms;
    subject->came = subject->came || kind != EventKind::kPresent;
    const bool is_news = subject->Add(item, std::move(facts));
    if (blocked) return TakeBlocked(*subject, name, *blocked, now);
    if (!is_news || subject->waits) return;
    subject->waits = true;
    // What is there when a session begins has nothing to wait for.
    subject->due_ms = now.monotonic_ms + (kind == EventKind::kPresent ? 0 : settle_ms_);
    waiting_.insert(name);
  }

  // The process of a program that the user blocked; where that could not be done lately, it is said and tried
  // again after an hour.
  std::optional<std::uint32_t> BlockedProcess(const Event& event, std::int64_t utc) const {
    const Item& item = event.item;
    const bool is_there = event.kind == EventKind::kPresent || event.kind == EventKind::kAdded;
    if (!book_.HasBlocks() || !is_there || item.monitor != monitor::kProcesses || item.program.empty())
      return {};
    const std::string code = AlertCode(key_, item.program);
    const auto decision = book_.DecisionOn(code);
    if (!decision || !decision->block) return {};
    const auto said = said_.find(code);
    if (said != said_.end() && said->second.refused && utc - said->second.utc < kRefusedSeconds) return {};
    std::uint64_t process = 0;
    const bool has_number =
        ReadNumber(std::string_view(item.description).substr(item.description.rfind(':') + 1), process);
    if (!has_number || process > UINT32_MAX) return {};
    return static_cast<std::uint32_t>(process);
  }

  // Has nothing to wait for.
  void TakeBlocked(Subject& subject, const std::string& name, std::uint32_t process, Moment now) {
    constexpr std::size_t kMostProcesses = 16;
    auto& processes = subject.blocked_processes;
    if (processes.size() == kMostProcesses) processes.erase(processes.begin());
    processes.push_back(process);
    subject.waits = true;
    subject.due_ms = now.monotonic_ms;
    waiting_.insert(name);
  }

  std::vector<Alert> Due(Moment now, std::int64_t until_ms, std::size_t most_put_off) {
    is_ending_ = most_put_off == 0;
    offers_.clear();
    std::vector<Offer> offers;
    // What was put off competes with whatever comes due meanwhile.
    const bool any_due = std::any_of(waiting_.begin(), waiting_.end(), [&](const std::string& name) {
      const auto found = subjects_.all().find(name);
      return found != subjects_.all().end() && found->second.due_ms <= until_ms;
    });
    for (auto at = waiting_.begin(); at != waiting_.end();) {
      const auto found = subjects_.all().find(*at);
      if (found == subjects_.all().end()) {
        at = waiting_.erase(at);
      } else if (found->second.due_ms > until_ms && !(any_due && found->second.put_off)) {
        ++at;
      } else if (auto offer = WeighSubject(found->second, now)) {
        offers.push_back(std::move(*offer));
        ++at;
      } else {
        found->second.StopWaiting();
        at = waiting_.erase(at);
      }
    }
    // The most unusual first: what it spends is not there for the others.
    std::stable_sort(offers.begin(), offers.end(),
                     [](const Offer& a, const Offer& b) { return a.LeftDoubt() < b.LeftDoubt(); });
    Budget budget = budget_;
    std::vector<Alert> alerts;
    for (Offer& offer : offers) {
      if (auto alert = Tell(offer, budget, now)) {
        alerts.push_back(std::move(*alert));
        offers_[offer.subject] = std::move(offer);
      } else {
        Rest(offer.subject);
      }
    }
    alerts = KeepPace(std::move(alerts), now, most_put_off);
    if (left_out_.IsDue(now.utc) || (is_ending_ && left_out_.count() > 0)) {
      Offer offer = OfferOfLeftOut(budget, now);
      alerts.push_back(AlertOf(offer.record, left_out_.AsSubject()));
      PutFirst(offer.record.facts.front().text, alerts.back().facts);
      offer.record.change = alerts.back().change;
      offers_[offer.subject] = std::move(offer);
    }
    std::stable_sort(alerts.begin(), alerts.end(), [](const Alert& a, const Alert& b) {
      return std::pair(!a.IsQuiet(), a.risk) < std::pair(!b.IsQuiet(), b.risk);
    });
    return alerts;
  }

  void Rest(const std::string& subject) {
    const auto found = subjects_.all().find(subject);
    if (found != subjects_.all().end()) found->second.StopWaiting();
    waiting_.erase(subject);
  }

  // Those that may be told now. Of the others an alert waits for a later minute or, when too many wait, is
  // counted into one that tells their number; a quiet line is let go.
  std::vector<Alert> KeepPace(std::vector<Alert> alerts, Moment now, std::size_t most_put_off) {
    std::vector<Alert> kept;
    std::vector<Alert> loud;
    std::vector<Ration::Offered> offered;
    std::stable_sort(alerts.begin(), alerts.end(),
                     [](const Alert& a, const Alert& b) { return a.risk > b.risk; });
    Pace quiet = quiet_;
    for (Alert& alert : alerts) {
      if (!alert.IsQuiet()) {
        offered.push_back({KindOf(offers_.at(alert.subject).record), alert.risk});
        loud.push_back(std::move(alert));
      } else if (quiet.Allows(now.utc)) {
        quiet.Count(now.utc);
        kept.push_back(std::move(alert));
      } else {
        Forget(alert.subject);
      }
    }
    const Ration::Choice choice = ration_.Choose(offered, now.utc, most_put_off);
    for (const std::size_t at : choice.now) kept.push_back(std::move(loud[at]));
    for (const std::size_t at : choice.later) {
      Subject& subject = subjects_.all().at(loud[at].subject);
      subject.put_off = true;
      subject.due_ms = now.monotonic_ms + Ration::SecondsLeft(now.utc) * 1000;
      offers_.erase(loud[at].subject);
    }
    for (const std::size_t at : choice.never) {
      LeaveOut(offers_.at(loud[at].subject).record.facts, loud[at].members.front());
      Forget(loud[at].subject);
    }
    return kept;
  }

  void Forget(const std::string& subject) {
    Rest(subject);
    offers_.erase(subject);
  }

  void LeaveOut(std::vector<Fact> facts, const Item& member) {
    // Alone it would not have been an alert for sure.
    if (!HasHard(facts) && DoubtOf(facts) > kMostDoubt) return;
    ++untold_;
    left_out_.Add(std::move(facts), member);
  }

  // Of those that were left out, as one alert.
  Offer OfferOfLeftOut(const Budget& budget, Moment now) const {
    Offer offer;
    AlertRecord& record = offer.record;
    offer.subject = record.subject = LeftOut::kSubject;
    record.code = AlertCode(key_, LeftOut::kSubject);
    record.facts = left_out_.Facts();
    record.doubt = DoubtOf(record.facts);
    record.risk = RiskOf(record.doubt, 1);
    record.needed = budget.Limit(now.utc);
    record.days_watched = baseline_.days_watched();
    return offer;
  }

  // What the package manager does to files of its own is no intrusion.
  double PackageFactor(const Contents& contents, std::int64_t utc) const {
    const bool installing = !contents.package.name.empty() && contents.package.unchanged &&
                            utc - contents.installed < kInstallingSeconds;
    return installing ? kInstallingFactor : 1;
  }

  AlertState StateOf(const Offer& offer) const {
    const AlertRecord& record = offer.record;
    // Contents that could not be had are nobody's equal.
    const bool fits = offer.decision && offer.decision->sha256 == record.sha256 &&
                      !(offer.is_program && record.sha256.empty());
    if (fits && !offer.decision->block) {
      std::set<int> hard;
      for (const Fact& fact : record.facts) {
        if (fact.hard) hard.insert(fact.number);
      }
      if (Covers(offer.decision->hard, hard)) return AlertState::kAllowed;
    }
    if (HasHard(record.facts) || offer.is_repeated) return AlertState::kRaised;
    if (baseline_.learning()) return AlertState::kLearning;
    return offer.LeftDoubt() <= record.needed ? AlertState::kRaised : AlertState::kHeldBack;
  }

  // Everything about the subject; nothing when it was said today.
  std::optional<Offer> WeighSubject(const Subject& subject, Moment now) {
    Offer offer;
    AlertRecord& record = offer.record;
    offer.subject = record.subject = subject.name;
    record.code = AlertCode(key_, subject.program.empty() ? subject.name : subject.program);
    record.facts = subject.Facts();
    offer.decision = book_.DecisionOn(record.code);
    if (offer.decision && offer.decision->block) {
      Fact fact;
      fact.number = kBlockedBefore;
      fact.topic = Topic::kBlocked;
      fact.weight = fact.full_weight = kBlockedWeight;
      fact.hard = true;
      fact.text = "was blocked before";
      record.facts.insert(record.facts.begin(), std::move(fact));
    }
    const auto said = said_.find(record.code);
    offer.is_repeated = said != said_.end() && now.utc - said->second.utc < kDay &&
                        Covers(said->second.facts, NumbersOf(record.facts));
    const Contents contents = files_.Of(subject.program, now.monotonic_ms, subject.running);
    offer.is_program = subject.is_program;
    offer.is_blocked_again = !subject.blocked_processes.empty() && offer.decision && offer.decision->block &&
                             !contents.sha256.empty() && contents.sha256 == offer.decision->sha256;
    if (offer.is_repeated && said->second.in_file && !offer.is_blocked_again) return {};
    record.sha256 = contents.sha256;
    record.package = contents.package.name;
    record.package_factor = PackageFactor(contents, now.utc);
    record.doubt = DoubtOf(record.facts);
    record.risk = RiskOf(record.doubt, record.package_factor);
    record.days_watched = baseline_.days_watched();
    return offer;
  }

  // The alert that the offer makes at this time; nothing when it is not worth a line.
  std::optional<Alert> Tell(Offer& offer, Budget& budget, Moment now) {
    AlertRecord& record = offer.record;
    record.needed = budget.Limit(now.utc);
    record.state = StateOf(offer);
    const Subject& subject = subjects_.all().at(offer.subject);
    if (record.state == AlertState::kRaised) {
      if (offer.IsPaid()) budget.Spend(offer.LeftDoubt(), now.utc);
    } else if (!subject.came || record.risk < kLeastQuietRisk ||
               Covers(subject.quiet_facts, NumbersOf(record.facts))) {
      return {};
    }
    Alert alert = AlertOf(record, subject);
    if (offer.is_blocked_again)
      alert.blocked = BlockedAgain{subject.program, record.sha256, subject.blocked_processes};
    record.change = alert.change;
    return alert;
  }

  Alert AlertOf(const AlertRecord& record, const Subject& subject) {
    Alert alert;
    alert.subject = subject.name;
    alert.rules = subject.Rules();
    alert.risk = record.risk;
    alert.members = subject.Members();
    alert.code = record.code;
    alert.change = identities_.ChangeOf(record.risk, record.state == AlertState::kRaised, record.code);
    alert.facts = Phrases(record.facts);
    alert.has_forerunner = written_.contains(alert.change);
    return alert;
  }

  void Note(Offer& offer, const Alert& alert, std::int64_t second, Moment now) {
    AlertRecord& record = offer.record;
    record.second = second;
    const auto numbers = NumbersOf(record.facts);
    const auto subject = subjects_.all().find(offer.subject);
    if (subject != subjects_.all().end()) {
      subject->second.StopWaiting();
      if (record.state != AlertState::kRaised) subject->second.quiet_facts = numbers;
    }
    waiting_.erase(offer.subject);
    if (offer.subject == LeftOut::kSubject) {
      left_out_.WasTold(now.utc);
      written_.insert(record.change);
    } else if (record.state == AlertState::kRaised) {
      if (said_.size() >= kMostRaised)
        std::erase_if(said_, [&](const auto& entry) { return now.utc - entry.second.utc >= kDay; });
      if (said_.size() >= kMostRaised) said_.clear();
      said_[record.code] = {now.utc, numbers, true, alert.acted.has_value() && !*alert.acted};
      if (written_.size() >= kMostRaised) written_.clear();
      written_.insert(record.change);
      ration_.Count(KindOf(record), now.utc);
      if (offer.IsPaid()) budget_.Spend(offer.LeftDoubt(), now.utc);
    } else {
      quiet_.Count(now.utc);
    }
    book_.Add(std::move(record));
  }

  void Save(std::int64_t utc, bool at_once) {
    if (!at_once && utc == last_utc_) return;
    last_utc_ = utc;
    baseline_.Save(utc, at_once);
    book_.Save(utc);
  }

  const std::int64_t settle_ms_;
  Keeper keeper_;
  const std::string key_;
  Baseline baseline_;
  ProgramFiles files_;
  Evidence evidence_;
  AlertBook book_;
  Identities identities_;
  Budget budget_;
  Subjects subjects_;
  std::set<std::string> waiting_;        // names of subjects to be weighed
  std::map<std::string, Offer> offers_;  // by subject, until the next turn
  std::map<std::string, Said> said_;     // by code
  std::set<std::string> written_;        // Change texts of the present file
  Ration ration_;
  Pace quiet_{3600, kQuietInAnHour};
  LeftOut left_out_;
  std::size_t untold_ = 0;  // of those that were left out, in the log
  std::int64_t next_message_utc_ = 0;
  bool is_ending_ = false;
  std::int64_t last_utc_ = 0;
};

}  // namespace

std::unique_ptr<Scorer> MakeBaselineScorer(const ScorerParts& parts) {
  return std::make_unique<BaselineScorer>(parts);
}

}  // namespace zendrix::agent
