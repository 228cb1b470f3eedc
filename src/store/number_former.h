// The stored form of Original and Change: the number at the head of the field with 16 decimals. Plain
// decimals, which nearly all fields are, are put together from their own digits; every other form goes
// through the general rules once and is remembered.
#pragma once

#include <string_view>
#include <vector>

#include "platform/locale.h"
#include "store/text_pool.h"

namespace zendrix::store {

class NumberFormer {
 public:
  // Formed texts go to `texts`.
  NumberFormer(const platform::LocaleInfo& locale, TextPool& texts);

  TextId Form(std::string_view field);

 private:
  std::size_t FormPlain(std::string_view field, char* out) const;
  TextId FormByRule(std::string_view field);

  const platform::LocaleInfo& locale_;
  TextPool& texts_;
  bool plain_locale_;              // groups of three, one character as decimal point and group mark
  TextPool ruled_;                 // fields that went through the general rules
  std::vector<TextId> ruled_ids_;  // and what they became
};

}  // namespace zendrix::store
