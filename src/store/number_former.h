// The stored form of Original and Change: the number at the head of the field with 16 decimals. Plain
// decimals, which nearly all fields are, are formed from their own digits; every other form goes
// through the general rules once and is remembered.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/locale.h"
#include "store/text_pool.h"

namespace zendrix::store {

class NumberFormer {
 public:
  // Formed texts go to `texts`.
  NumberFormer(const platform::LocaleInfo& locale, TextPool& texts);

  TextId Form(std::string_view field) {
    if (field.size() > 7) return FormAny(field);
    const std::uint64_t key = KeyOf(field);
    Recent& recent = recent_[(key * 0x9E3779B97F4A7C15) >> 54];
    if (recent.key != key) recent = {key, FormAny(field)};
    return recent.id;
  }

 private:
  // Cache of short fields: nearly all fields of a file are a few small numbers.
  struct Recent {
    std::uint64_t key;  // 0 for none
    TextId id;
  };

  // The bytes of a field of at most seven, and its length plus one on top.
  static std::uint64_t KeyOf(std::string_view field) {
    std::uint64_t key = (field.size() + 1) << 56;
    for (std::size_t i = 0; i < field.size(); ++i) {
      key |= static_cast<std::uint64_t>(static_cast<unsigned char>(field[i])) << (8 * i);
    }
    return key;
  }

  TextId FormAny(std::string_view field);
  std::size_t FormPlain(std::string_view field, char* out) const;
  TextId FormByRule(std::string_view field);

  const platform::LocaleInfo& locale_;
  TextPool& texts_;
  bool plain_locale_;  // groups of three, one character as decimal point and group mark
  std::array<Recent, 1024> recent_{};
  TextPool ruled_;                 // fields that went through the general rules
  std::vector<TextId> ruled_ids_;  // and what they became
};

}  // namespace zendrix::store
