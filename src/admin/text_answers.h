// What a question about a text comes to for each text of a pool. It is asked when an answer is first wanted,
// together with those about the texts around it: they lie side by side in memory, and whoever goes through
// rows wants them all. An answer takes one bit.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "store/text_pool.h"

namespace zendrix::admin {

class TextAnswers {
 public:
  // For the texts that the pool holds by now. It outlives this object.
  explicit TextAnswers(const store::TextPool& pool) : pool_(pool) {}

  // `question` takes a text and gives the answer, the same one whenever it is asked.
  template <class Question>
  bool Of(store::TextId id, const Question& question) {
    if (yes_.empty()) {
      yes_.resize(pool_.size());
      asked_.resize(pool_.size() / kTogether + 1);
    }
    if (!asked_[id / kTogether]) Ask(id / kTogether, question);
    return yes_[id];
  }

 private:
  static constexpr store::TextId kTogether = 128;

  template <class Question>
  void Ask(store::TextId group, const Question& question) {
    const store::TextId end = std::min((group + 1) * kTogether, static_cast<store::TextId>(yes_.size()));
    for (store::TextId id = group * kTogether; id < end; ++id) yes_[id] = question(pool_.Text(id));
    asked_[group] = true;
  }

  const store::TextPool& pool_;
  std::vector<bool> yes_, asked_;
};

}  // namespace zendrix::admin
