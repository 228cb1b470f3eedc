#include "act/acting.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "family/description_reading.h"
#include "family/intermediate/named_file.h"
#include "family/intermediate/quarantine.h"
#include "platform/windows_1252.h"

namespace zendrix::act {
namespace {

constexpr std::size_t kSentence = 255;
constexpr std::size_t kPathAsked = 120;
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
std::string PathToAsk(const std::string& path) {
  std::string text = family::Fitting(family::NameToTell(path), kPathAsked);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '<' || c == '>' || c == '&'; }, '?');
  return platform::Utf8FromBytes(text);
}

family::Event EventOf(const BlockRequest& request) {
  const ShownEvent& event = request.event;
  return {
      event.monitor, event.description, event.second, std::to_string(event.alert_second), request.shown, ""};
}

}  // namespace

std::string Acting::WhyNotNow(const Caller& caller) const {
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
  const StoreAnswer taken = parts_.store.Take(same, caller.user);
  if (!taken.done) return Refusal(taken.sentence);
  bool done = true;
  std::vector<Held> all;
  all.push_back(std::move(held));
  std::string sentence = taken.sentence + EndAll(all, done);
  const auto noted =
      parts_.record.Add({taken.file.path, taken.file.sha256, parts_.clock.NowUtc(), caller.user});
  if (!noted) sentence += " This could not be noted, so it is not blocked by itself when it comes again.";
  return {done, family::Fitting(sentence, kSentence)};
}

std::string Acting::EndAll(std::vector<Held>& held, bool& done) {
  std::string ended;
  std::string going_on;
  for (Held& one : held) {
    if (!one.process) continue;
    const Found found = one.process->Is(one.shown);
    if (found == Found::kGone) continue;
    const bool is_ended = found == Found::kIt && one.process->End() == Ending::kEnded;
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
      [this, wanted = *entry, reply = std::move(reply)](Verdict verdict) {
        reply(verdict == Verdict::kYes ? Restore(wanted) : Refusal(WhyNot(verdict)));
      });
}

Answer Acting::Restore(const family::Entry& entry) {
  // First of all, so that at no moment a program is back that is blocked again by itself.
  const std::string& path = entry.manifest.path;
  const std::string& sha256 = entry.manifest.sha256;
  const auto noted = parts_.record.Find(path, sha256);
  if (!parts_.record.Forget(path, sha256))
    return Refusal("It could not be noted that " + family::NameToTell(path) +
                   " is allowed, so it stays in quarantine.");
  const StoreAnswer answer = parts_.store.Restore(entry.name);
  if (answer.done) return {true, family::Fitting(answer.sentence, kSentence)};
  // A note that cannot be made again means one alert more, no less.
  if (noted) static_cast<void>(parts_.record.Add(*noted).ok());
  return Refusal(answer.sentence);
}

Answer Acting::BlockAgain(const Caller& caller, const std::string& path, const std::string& sha256,
                          const std::vector<pid_t>& processes) {
  if (caller.user != parts_.agent_user) return Refusal("Only the Agent may ask for this.");
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
