// A filter over many rows that share their texts: every distinct host, monitor, change code and description
// is asked about once, and so is every stretch of six hours whose shown times read back second by second. A
// row gets the answer that CheckQuery gives for its cells.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "admin/event_rows.h"
#include "admin/filter_query.h"
#include "admin/text_answers.h"

namespace zendrix::admin {

class PreparedQuery {
 public:
  // `rows` outlives this object and does not change meanwhile.
  PreparedQuery(FilterQuery query, const EventRows& rows);

  bool Passes(std::uint32_t row);

 private:
  enum class Answer : std::uint8_t { kUnknown, kNo, kYes, kAskTheKey };
  // Keys of six hours, in one form of showing them.
  struct Stretch {
    std::uint64_t number = std::numeric_limits<std::uint64_t>::max();
    std::optional<std::int64_t> offset;  // from key to moment; nothing: each key has to be read
  };
  static constexpr std::size_t kSlots = 64;

  Answer AnswerOfSource(std::uint32_t row) const;
  bool KeyPasses(std::uint32_t row);
  std::optional<std::int64_t> MomentOf(std::uint32_t row, std::int32_t key) const;
  std::optional<std::int64_t> OffsetOf(std::uint32_t row, std::int64_t first_key) const;

  const FilterQuery query_;
  const EventRows& rows_;
  std::vector<Answer> sources_;
  TextAnswers descriptions_;
  std::array<Stretch, kSlots> stretches_;
};

}  // namespace zendrix::admin
