// The users' decisions on alerts, as the Agent of the computer is to follow them: "code,1" for a Block,
// "code,0" for an Allow, one line (CR LF) for each code, in a file of the superuser's that the Agent reads.
// What a desktop user's console files in its own folder is no decision for everybody.
//
// Bounded: the oldest lines go first. Replaced as a whole. What is no such line is dropped with the next
// decision.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace zendrix::act {

// "AG," and 24 hexadecimal digits in capitals, as the Agent makes them.
bool IsAlertCode(std::string_view text);

// The file's text with the decision in it, as its newest.
std::string WithDecision(std::string_view text, const std::string& code, bool block);

class DecisionRecord {
 public:
  // What the Agent takes at most.
  static constexpr std::size_t kMost = 10000;

  // `files` outlives the object; what it writes can be read by the folder's group.
  DecisionRecord(platform::Files& files, std::string path) : files_(files), path_(std::move(path)) {}

  platform::Status File(const std::string& code, bool block);

 private:
  platform::Files& files_;
  const std::string path_;
};

}  // namespace zendrix::act
