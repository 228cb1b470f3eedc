#include "agent/events/events.h"

#include <utility>

namespace zendrix::agent {
namespace {

Event ItemEvent(EventKind kind, Item item) {
  Event event;
  event.kind = kind;
  event.item = std::move(item);
  // As a count of one thing: nothing changed about what was there all along.
  event.original = kind == EventKind::kPresent || kind == EventKind::kRemoved ? 1 : 0;
  event.change = kind == EventKind::kPresent ? 0 : kind == EventKind::kRemoved ? -1 : 1;
  return event;
}

// What lies in a temporary folder is judged by what it is; that it is new says nothing there.
bool IsInTemporaryFolder(const Item& item) {
  return item.rules.Has(Rule::kSetUserIdInTemporaryFolder) ||
         item.rules.Has(Rule::kHiddenProgramInTemporaryFolder) ||
         item.rules.Has(Rule::kProgramFileInTemporaryFolder);
}

void AddRuleForNews(Item& item) {
  if (item.monitor == monitor::kPorts) item.rules.Add(Rule::kPortNew);
  if (item.monitor == monitor::kAccounts) item.rules.Add(Rule::kAccountNew);
  if (item.monitor == monitor::kAutorun) item.rules.Add(Rule::kAutorunNew);
  if (item.monitor == monitor::kFolders && !IsInTemporaryFolder(item))
    item.rules.Add(Rule::kSystemFolderChanged);
}

}  // namespace

Event CameEvent(Item item) {
  Event event = ItemEvent(EventKind::kAdded, std::move(item));
  AddRuleForNews(event.item);
  return event;
}

Event WentEvent(Item item) {
  return ItemEvent(EventKind::kRemoved, std::move(item));
}

Event HappenedEvent(Item item) {
  return ItemEvent(EventKind::kHappened, std::move(item));
}

std::vector<Event> PresentEvents(const std::vector<Item>& items) {
  std::vector<Event> events;
  for (const Item& item : Compare({}, items).added) events.push_back(ItemEvent(EventKind::kPresent, item));
  return events;
}

std::vector<Event> ChangeEvents(const Difference& difference) {
  std::vector<Event> events;
  // What went comes first: the console looks backward for an alert's events and must find the coming of a
  // thing that went and came again, not its going.
  for (const Item& item : difference.removed) events.push_back(WentEvent(item));
  for (const Item& item : difference.added) events.push_back(CameEvent(item));
  return events;
}

}  // namespace zendrix::agent
