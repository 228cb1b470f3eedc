// The user's decisions on alerts, as the console files them, and the file that it reads them back from.
//
// KorvessaActivations.kvl is the console's: "code,1" for a Block, "code,0" for an Allow, one line for each
// code (see identity.h). KorvessaAlr.kvl is the Agent's: the second of each alert that is decided, with "A"
// behind it when it is blocked; the console reads it at its start, so that a decision outlives it. No second
// stands twice, because the console's reading ends at the second line with it. It lies in the folder of the
// Home form, and so does the first, but that of a service, which the helper that acts writes with the user's
// consent.
//
// Otherwise the first file belongs to a desktop user and holds whatever that user, or a program of his, put
// there: it is bounded, and a line that is not exactly of this form is no decision.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "agent/score/scorer.h"
#include "platform/files.h"

namespace zendrix::agent {

inline constexpr char kActivationsFile[] = "KorvessaActivations.kvl";
inline constexpr char kCheckedAlertsFile[] = "KorvessaAlr.kvl";

struct FiledDecision {
  std::string code;  // "AG," and its digits
  bool block = false;
};

inline constexpr std::size_t kMostFiled = 10000;
std::vector<FiledDecision> ParseActivations(std::string_view text);

// The new text of KorvessaAlr.kvl: what was decided now, and of the old text the seconds that it does not
// name.
std::string CheckedAlertsText(std::string_view old_text, const std::vector<DecidedAlert>& decided);

class DecisionFiles {
 public:
  // Looked at so often, in milliseconds.
  static constexpr std::int64_t kEveryMs = 2000;

  // `files` outlives the object.
  DecisionFiles(platform::Files& files, const std::string& activations_folder, const std::string& folder);

  // Hands new decisions to the scorer and writes what the console is to read. Reads no more often than it
  // should. What is to be told in the log; each refusal once.
  std::vector<std::string> Follow(Scorer& scorer, std::int64_t now_ms);

 private:
  platform::Result<std::string> Read(const std::string& path);

  platform::Files& files_;
  const std::string activations_path_;
  const std::string checked_path_;
  std::string seen_;    // the activations last read
  bool is_due_ = true;  // the checked alerts are to be written
  bool failing_ = false;
  std::int64_t next_ms_ = 0;
};

}  // namespace zendrix::agent
