#include "act/family_store.h"

#include <new>

#include "act/whose.h"

namespace zendrix::act {
namespace {

constexpr char kNoMemory[] = "The computer is short of memory. Try again in a moment.";

// What was begun when the memory ran out is brought to an end by the next operation.
template <class Operation>
StoreAnswer Tell(Operation&& operation) {
  try {
    return operation();
  } catch (const family::Refused& refused) {
    return {false, refused.sentence, {}};
  } catch (const std::bad_alloc&) {
    return {false, kNoMemory, {}};
  }
}

}  // namespace

FamilyStore::FamilyStore(const std::string& folder) {
  pretending_.Configure(folder, true);
  acting_.Configure(folder, false);
}

StoreAnswer FamilyStore::PutAway(family::Quarantine& quarantine, const family::Event& event, uid_t user) {
  return Tell([&]() -> StoreAnswer {
    quarantine.SetOutside(family::ThisComputerFor(user));
    const std::string sentence = quarantine.PutAway(event);
    const auto& taken = quarantine.taken();
    const auto& manifest = taken->manifest;
    const bool others = IsOthers(manifest.path, manifest.owner,
                                 {user, family::HomeOf(user), family::SharedAutostartPlaces()});
    return {true, sentence, {manifest.path, manifest.sha256, {taken->device, taken->number}, others}};
  });
}

StoreAnswer FamilyStore::Look(const family::Event& event, uid_t user) {
  return PutAway(pretending_, event, user);
}

StoreAnswer FamilyStore::Take(const family::Event& event, uid_t user) {
  return PutAway(acting_, event, user);
}

StoreAnswer FamilyStore::Restore(const std::string& name) {
  return Tell([&]() -> StoreAnswer { return {true, acting_.PutBackEntry(name), {}}; });
}

StoreList FamilyStore::List() {
  StoreList list;
  const StoreAnswer answer = Tell([&]() -> StoreAnswer {
    list.entries = acting_.List();
    return {true, "", {}};
  });
  list.known = answer.done;
  list.sentence = answer.sentence;
  return list;
}

}  // namespace zendrix::act
