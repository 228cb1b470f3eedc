#include "act/acting.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "family/description_reading.h"
#include "family/intermediate/named_file.h"
#include "family/intermediate/quarantine.h"
#include "family/intermediate/sha256.h"
#include "platform/windows_1252.h"

namespace zendrix::act {
namespace {

constexpr std::size_t kSentence = 255;
constexpr std::size_t kPathAsked = 120;
constexpr std::int64_t kEndMs = 2000;  // for all that are ended at once
constexpr char kTooOften[] =
    "Zendrix was asked too much in too short a time. Nothing was changed; try again in a moment.";
constexpr char kNobody[] = "Send Alerts To=;SMTP Server=:25;";
constexpr char kFolderMonitor[] = "Windows Folder";  // of events that mean a file and no process

Answer Refusal(const std::string& why) {
  return {false, family::Fitting(why, kSentence)};
}

std::string WhyNot(Verdict verdict) {
  switch (verdict) {
    case Verdict::kYes:
      break;
    case Verdict::kNo:
      return "You have no permission for this on this computer. Nothing was changed.";
    case Verdict::kDismissed:
      return "The question for permission was closed. Nothing was changed.";
    case Verdict::kNobodyToAsk:
      return "This needs a permission, and there is nobody here who can be asked for it. Nothing was "
             "changed.";
    case Verdict::kUnavailable:
      return "The computer did not say whether you have permission for this. Nothing was changed.";
  }
  return "";
}

// The process that the description shows; 0 when it shows none.
pid_t ProcessShown(const ShownEvent& event) {
  if (family::KindOfMonitor(event.monitor) != family::DescriptionKind::kRunningProcess) return 0;
  const auto text =
      family::ReadDescription(family::DescriptionKind::kRunningProcess, event.description).process;
  pid_t process = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), process);
  return error == std::errc() && end == text.data() + text.size() ? process : 0;
}

// A dialog may read markup, and the bus takes no broken UTF-8.
std::string TextToAsk(const std::string& clean) {
  std::string text = family::Fitting(clean, kPathAsked);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '<' || c == '>' || c == '&'; }, '?');
  return platform::Utf8FromBytes(text);
}

std::string PathToAsk(const std::string& path) {
  return TextToAsk(family::NameToTell(path));
}

// Whom alerts would go to, and by which server: the file's first two fields.
std::string MailToAsk(const std::string& settings) {
  if (settings.empty()) return "nowhere";
  std::string told;
  std::string_view rest(settings);
  for (int i = 0; i < 2; ++i) {
    const std::string_view field = rest.substr(0, rest.find(';'));
    rest.remove_prefix(std::min(rest.size(), field.size() + 1));
    const std::size_t equals = field.find('=');
    if (i > 0) told += " by ";
    told += equals == std::string_view::npos ? std::string_view() : field.substr(equals + 1);
  }
  return TextToAsk(family::NameToTell(told));
}

std::string SideFileOf(const std::string& path) {
  return path.substr(0, path.rfind('.')) + ".kvh";
}

family::Event EventOf(const BlockRequest& request) {
  const ShownEvent& event = request.event;
  return {
      event.monitor, event.description, event.second, std::to_string(event.alert_second), request.shown, ""};
}

}  // namespace

bool Acting::AsksTooOften(Allowance& allowance, const Caller& caller) const {
  return !allowance.Take(caller.user, parts_.clock.MonotonicMs());
}

std::string Acting::WhyNotNow(const Caller& caller) {
  if (AsksTooOften(question_allowance_, caller)) return kTooOften;
  const bool waits = std::any_of(pending_.begin(), pending_.end(),
                                 [&](const auto& one) { return one.second.user == caller.user; });
  if (waits || pending_.size() >= kMostPending)
    return "Zendrix is waiting for an answer to another question. Nothing was changed.";
  return "";
}

void Acting::Ask(const Caller& caller, std::string_view action, const AskedAbout& about,
                 std::function<void(Verdict)> go_on) {
  const std::uint64_t ticket = ++last_ticket_;
  pending_[ticket] = {caller.name, caller.user, std::move(go_on)};
  parts_.authority.Ask(caller, action, about, ticket, [this, ticket](Verdict verdict) {
    const auto found = pending_.find(ticket);
    if (found == pending_.end()) return;
    const auto wanted = std::move(found->second.go_on);
    pending_.erase(found);
    wanted(verdict);
  });
}

void Acting::CallerGone(const std::string& name) {
  std::vector<std::uint64_t> tickets;
  for (const auto& [ticket, pending] : pending_) {
    if (pending.caller == name) tickets.push_back(ticket);
  }
  for (const std::uint64_t ticket : tickets) {
    pending_.erase(ticket);
    parts_.authority.Withdraw(ticket);
  }
}

void Acting::GiveUp() {
  while (!pending_.empty()) {
    const auto ticket = pending_.begin()->first;
    const auto wanted = std::move(pending_.begin()->second.go_on);
    pending_.erase(pending_.begin());
    parts_.authority.Withdraw(ticket);
    wanted(Verdict::kUnavailable);
  }
}

void Acting::Block(const Caller& caller, const BlockRequest& request, Reply reply) {
  const ShownEvent& event = request.event;
  if (event.description.size() > kLongestText || event.monitor.size() > kLongestText)
    return reply(Refusal("This event is longer than any that the Agent writes. Nothing was changed."));
  if (const auto why = WhyNotNow(caller); !why.empty()) return reply(Refusal(why));
  const Told told = parts_.agent.Tells(event);
  if (told == Told::kUnreadable)
    return reply(Refusal("What the Agent wrote cannot be read. Nothing was changed."));
  if (told == Told::kNo)
    return reply(Refusal("The Agent has not told of this event in its present file. Nothing was changed."));
  const family::Event meant = EventOf(request);
  const StoreAnswer looked = parts_.store.Look(meant, caller.user);
  if (!looked.done) return reply(Refusal(looked.sentence));
  // Held from here on: whoever has the number behind the answer is not hit.
  const auto held = std::make_shared<Held>();
  held->shown = {ProcessShown(event), looked.file.id, event.second};
  if (held->shown.process > 0) held->process = parts_.processes.Hold(held->shown.process);
  if (held->process && held->process->Is(held->shown) == Found::kAnother)
    return reply(Refusal("The program of this event is not the file " + family::NameToTell(looked.file.path) +
                         ". Nothing was changed."));
  AskedAbout about{PathToAsk(looked.file.path)};
  if (held->process) about.process = std::to_string(held->shown.process);
  Ask(caller, looked.file.others ? kBlockOtherAction : kBlockAction, about,
      [this, caller, meant, file = looked.file, held, reply = std::move(reply)](Verdict verdict) {
        reply(verdict == Verdict::kYes ? TakeShown(meant, caller, file, *held) : Refusal(WhyNot(verdict)));
      });
}

Answer Acting::TakeShown(const family::Event& event, const Caller& caller, const TakenFile& looked,
                         Held& held) {
  family::Event same = event;
  same.sha256 = looked.sha256;  // what the user was asked about
  if (!looked.others) {
    // A consent of the user's own covers nothing that became an administrator's affair meanwhile.
    const StoreAnswer again = parts_.store.Look(same, caller.user);
    if (!again.done) return Refusal(again.sentence);
    if (again.file.others)
      return Refusal(family::NameToTell(looked.path) +
                     " is no longer the file that you were asked about. Nothing was changed.");
  }
  // In front of the move: should this end in between, what was consented to is still done when the program is
  // seen again.
  const auto before = parts_.record.Find(looked.path, looked.sha256);
  const auto noted = parts_.record.Add({looked.path, looked.sha256, parts_.clock.NowUtc(), caller.user});
  const StoreAnswer taken = parts_.store.Take(same, caller.user);
  if (!taken.done) {
    if (noted && before) static_cast<void>(parts_.record.Add(*before).ok());
    if (noted && !before) static_cast<void>(parts_.record.Forget(looked.path, looked.sha256).ok());
    return Refusal(taken.sentence);
  }
  Consented(caller, event.alert, taken.file.path, true);
  bool done = true;
  std::vector<Held> all;
  all.push_back(std::move(held));
  std::string sentence = taken.sentence + EndAll(all, done);
  if (!noted) sentence += " This could not be noted, so it is not blocked by itself when it comes again.";
  return {done, family::Fitting(sentence, kSentence)};
}

std::string Acting::EndAll(std::vector<Held>& held, bool& done) {
  std::erase_if(held,
                [](const Held& one) { return !one.process || one.process->Is(one.shown) == Found::kGone; });
  const auto is_it = [](const Held& one) { return one.process->Is(one.shown) == Found::kIt; };
  for (Held& one : held) {
    if (is_it(one)) one.process->Kill();
  }
  std::string ended;
  std::string going_on;
  std::int64_t left_ms = kEndMs;
  for (Held& one : held) {
    const std::int64_t began_ms = parts_.clock.MonotonicMs();
    const bool is_ended = one.process->HasEnded(left_ms);
    left_ms = std::max<std::int64_t>(0, left_ms - (parts_.clock.MonotonicMs() - began_ms));
    std::string& list = is_ended ? ended : going_on;
    list += (list.empty() ? "" : ", ") + std::to_string(one.shown.process);
  }
  std::string sentence;
  if (!ended.empty()) sentence += " Ended process: " + ended + ".";
  if (!going_on.empty()) sentence += " Could not be ended and goes on: process " + going_on + ".";
  done = done && going_on.empty();
  return sentence;
}

void Acting::Allow(const Caller& caller, const std::string& name, Reply reply) {
  if (const auto why = WhyNotNow(caller); !why.empty()) return reply(Refusal(why));
  const StoreList list = parts_.store.List();
  if (!list.known) return reply(Refusal(list.sentence));
  const auto entry = std::find_if(list.entries.begin(), list.entries.end(),
                                  [&](const family::Entry& one) { return one.name == name; });
  if (entry == list.entries.end()) return reply(Refusal("There is no such entry in quarantine."));
  Ask(caller, kAllowAction, {PathToAsk(entry->manifest.path)},
      [this, caller, wanted = *entry, reply = std::move(reply)](Verdict verdict) {
        reply(verdict == Verdict::kYes ? Restore(wanted, caller) : Refusal(WhyNot(verdict)));
      });
}

Answer Acting::Restore(const family::Entry& entry, const Caller& caller) {
  // First of all, so that at no moment a program is back that is blocked again by itself.
  const std::string& path = entry.manifest.path;
  const std::string& sha256 = entry.manifest.sha256;
  const auto noted = parts_.record.Find(path, sha256);
  if (!parts_.record.Forget(path, sha256))
    return Refusal("It could not be noted that " + family::NameToTell(path) +
                   " is allowed, so it stays in quarantine.");
  const StoreAnswer answer = parts_.store.Restore(entry.name);
  if (answer.done) {
    Consented(caller, entry.manifest.alert, path, false);
    return {true, family::Fitting(answer.sentence, kSentence)};
  }
  // A note that cannot be made again means one alert more, no less.
  if (noted) static_cast<void>(parts_.record.Add(*noted).ok());
  return Refusal(answer.sentence);
}

void Acting::Consented(const Caller& caller, const std::string& alert_second, const std::string& path,
                       bool block) {
  Consent consent{caller.user, 0, path, block, parts_.clock.MonotonicMs() + kConsentMs};
  const char* const last = alert_second.data() + alert_second.size();
  const auto [end, error] = std::from_chars(alert_second.data(), last, consent.alert_second);
  if (error != std::errc() || end != last) return;
  if (consents_.size() >= kMostPending) consents_.erase(consents_.begin());
  consents_.push_back(std::move(consent));
}

bool Acting::HasConsented(const Caller& caller, const ShownAlert& alert, std::string_view description,
                          bool block) {
  std::erase_if(consents_,
                [now_ms = parts_.clock.MonotonicMs()](const Consent& one) { return one.until_ms < now_ms; });
  const auto found = std::find_if(consents_.begin(), consents_.end(), [&](const Consent& one) {
    return one.user == caller.user && one.alert_second == alert.second && one.block == block &&
           NamesFile(description, one.path);
  });
  if (found == consents_.end()) return false;
  consents_.erase(found);
  return true;
}

void Acting::Decide(const Caller& caller, const ShownAlert& alert, bool block, Reply reply) {
  if (!IsAlertCode(alert.code)) return reply(Refusal("This is no alert of the Agent's. Nothing was noted."));
  if (const auto why = WhyNotNow(caller); !why.empty()) return reply(Refusal(why));
  std::string description;
  const Told told = parts_.agent.TellsAlert(alert, description);
  if (told == Told::kUnreadable)
    return reply(Refusal("What the Agent wrote cannot be read. Nothing was changed."));
  if (told == Told::kNo)
    return reply(Refusal("The Agent has not told of this alert in its present file. Nothing was changed."));
  if (HasConsented(caller, alert, description, block)) return reply(FileDecision(alert, block));
  Ask(caller, block ? kDecideBlockAction : kDecideAllowAction, {TextToAsk(family::NameToTell(description))},
      [this, alert, block, reply = std::move(reply)](Verdict verdict) {
        reply(verdict == Verdict::kYes ? FileDecision(alert, block) : Refusal(WhyNot(verdict)));
      });
}

Answer Acting::FileDecision(const ShownAlert& alert, bool block) {
  const auto filed = parts_.decisions.File(alert.code, block);
  if (!filed) return Refusal("The decision could not be noted for the Agent: " + filed.error().text);
  return {true, "The Agent follows this decision from now on."};
}

void Acting::SetMail(const Caller& caller, const std::string& settings, Reply reply) {
  if (settings.size() > kLongestMail || settings.find('\0') != std::string::npos)
    return reply(Refusal("These are no settings of e-mail. Nothing was changed."));
  if (const auto why = WhyNotNow(caller); !why.empty()) return reply(Refusal(why));
  Ask(caller, kMailAction, {MailToAsk(settings)},
      [this, settings, reply = std::move(reply)](Verdict verdict) {
        reply(verdict == Verdict::kYes ? LayDownMail(settings) : Refusal(WhyNot(verdict)));
      });
}

Answer Acting::LayDownMail(const std::string& settings) {
  // None are settings that name nobody: a file that is gone might come back, and what waits would wait for
  // it.
  const std::string text = settings.empty() ? kNobody : settings;
  platform::Files& files = parts_.mail_files;
  const std::string side_file = SideFileOf(parts_.mail_settings);
  const auto old_side = files.ReadAll(side_file);
  // The mailer uses no settings that do not fit their side file, and starts when the settings change: the
  // side file is there first.
  auto done = files.WriteAll(side_file, family::Sha256Of(text) + "\r\n");
  if (done) {
    done = files.WriteAll(parts_.mail_settings, text);
    // The old settings are to be used again.
    if (!done && old_side) static_cast<void>(files.WriteAll(side_file, old_side.value()).ok());
  }
  if (!done) return Refusal("The settings of e-mail could not be laid down: " + done.error().text);
  return {true, settings.empty() ? "No alerts are mailed from now on."
                                 : "Alerts are mailed by these settings from now on."};
}

Answer Acting::BlockAgain(const Caller& caller, const std::string& path, const std::string& sha256,
                          const std::vector<pid_t>& processes) {
  if (caller.user != parts_.agent_user) return Refusal("Only the Agent may ask for this.");
  if (AsksTooOften(allowance_, caller)) return Refusal(kTooOften);
  if (path.size() > kLongestText || processes.size() > kMostProcesses || !IsSha256(sha256))
    return Refusal("This names no program that was blocked.");
  const auto known = parts_.record.Find(path, sha256);
  if (!known) return Refusal(family::NameToTell(path) + " was not blocked with these contents.");
  // The contents prove what it is, whether a process of it still lives or not.
  const family::Event event = {kFolderMonitor, path, std::nullopt, "", true, sha256};
  const StoreAnswer looked = parts_.store.Look(event, known->user);
  if (!looked.done) return Refusal(looked.sentence);
  if (looked.file.path != path || looked.file.sha256 != sha256)
    return Refusal(family::NameToTell(path) + " is not what was blocked. Nothing was changed.");
  std::vector<Held> held;
  for (const pid_t process : processes) {
    Held one{parts_.processes.Hold(process), {process, looked.file.id, std::nullopt}};
    // A process that has become something else is none of it.
    if (one.process && one.process->Is(one.shown) == Found::kIt) held.push_back(std::move(one));
  }
  const StoreAnswer taken = parts_.store.Take(event, known->user);
  if (!taken.done) return Refusal(taken.sentence);
  bool done = true;
  const std::string sentence = taken.sentence + EndAll(held, done);
  return {done, family::Fitting(sentence, kSentence)};
}

Answer Acting::List(const Caller& caller) {
  if (AsksTooOften(allowance_, caller)) return Refusal(kTooOften);
  StoreList list = parts_.store.List();
  if (!list.known) return {false, list.sentence};
  const bool all =
      caller.user == 0 || caller.user == parts_.agent_user || parts_.is_administrator(caller.user);
  if (!all)
    std::erase_if(list.entries, [&](const family::Entry& entry) {
      const auto noted = parts_.record.Find(entry.manifest.path, entry.manifest.sha256);
      return entry.manifest.owner != caller.user && !(noted && noted->user == caller.user);
    });
  return {true, family::LinesOf(list.entries)};
}

}  // namespace zendrix::act
