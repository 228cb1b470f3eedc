// Who says whether somebody may do something: the computer's own authority, which may ask the user.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zendrix::act {

// The one who calls, as the bus knows him; nothing of it is the caller's own word.
struct Caller {
  std::string name;        // unique on the bus
  std::uint32_t user = 0;  // user id
  bool may_ask = false;    // whether he waits for a user who can be asked
};

inline constexpr std::string_view kBlockAction = "com.korvessa.zendrix.block";
// Of a file that is not plainly the caller's affair (whose.h): an administrator's word each time.
inline constexpr std::string_view kBlockOtherAction = "com.korvessa.zendrix.block-other";
inline constexpr std::string_view kAllowAction = "com.korvessa.zendrix.allow";
// What is filed with the Agent, and moves no file: see acting.h.
inline constexpr std::string_view kDecideBlockAction = "com.korvessa.zendrix.decide-block";
inline constexpr std::string_view kDecideAllowAction = "com.korvessa.zendrix.decide-allow";
inline constexpr std::string_view kMailAction = "com.korvessa.zendrix.mail";

// What the user reads in the question. Chosen by whoever is to be caught: cleaned and short.
struct AskedAbout {
  std::string path;              // UTF-8, quoted; of a decision what the alert is about
  std::string process = "none";  // that would be ended
};

enum class Verdict {
  kYes,
  kNo,
  kDismissed,    // the user closed the question
  kNobodyToAsk,  // it would depend on an answer that nobody can give
  kUnavailable,  // the authority does not answer
};

class Authority {
 public:
  virtual ~Authority() = default;
  // Answers once, now or later, unless the question was withdrawn. `ticket` names the question.
  virtual void Ask(const Caller& caller, std::string_view action, const AskedAbout& about,
                   std::uint64_t ticket, std::function<void(Verdict)> answer) = 0;
  virtual void Withdraw(std::uint64_t ticket) = 0;
};

}  // namespace zendrix::act
