// The quarantine of the family library, in the folder "Quarantine" of the helper's own.
#pragma once

#include <string>

#include "act/store.h"
#include "family/intermediate/quarantine.h"

namespace zendrix::act {

class FamilyStore : public Store {
 public:
  explicit FamilyStore(const std::string& folder);

  StoreAnswer Look(const family::Event& event, uid_t user) override;
  StoreAnswer Take(const family::Event& event, uid_t user) override;
  StoreAnswer Restore(const std::string& name) override;
  StoreList List() override;

 private:
  static StoreAnswer PutAway(family::Quarantine& quarantine, const family::Event& event, uid_t user);

  family::Quarantine pretending_;
  family::Quarantine acting_;
};

}  // namespace zendrix::act
