// The little language of finds and filters:
//   criteria = comparison { blanks AND blanks comparison } blanks
//   comparison = Column op value        op: = <> < <= > >=     value: '...' or a number
// AND is read in any case; blanks around the operator do not matter. A quoted value ends at the next quote,
// so a value that contains one leaves text that does not parse, and the whole criterion is malformed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zendrix::platform {
struct LocaleInfo;
}

namespace zendrix::store {

class EventTable;

enum class Op { kEqual, kNotEqual, kLess, kLessOrEqual, kGreater, kGreaterOrEqual };

struct Comparison {
  int column = 0;
  Op op = Op::kEqual;
  bool numeric = false;  // compare as numbers (always so for ID)
  std::string text;      // the quoted value
  double number = 0;     // the number; for a quoted value only with ID
  bool never = false;    // ID against a quoted text that is no number
};

// Raises 3001 for what is not in the language or names no column of the table. A blank text gives no
// comparison.
std::vector<Comparison> ParseCriteria(std::string_view text, const EventTable& table);

// Whether `order` (negative, zero, positive: how the left side stands to the right) satisfies the operator.
inline bool Satisfies(Op op, int order) {
  switch (op) {
    case Op::kEqual:
      return order == 0;
    case Op::kNotEqual:
      return order != 0;
    case Op::kLess:
      return order < 0;
    case Op::kLessOrEqual:
      return order <= 0;
    case Op::kGreater:
      return order > 0;
    case Op::kGreaterOrEqual:
      return order >= 0;
  }
  return false;
}

}  // namespace zendrix::store
