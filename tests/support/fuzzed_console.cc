#include "support/fuzzed_console.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "core/run_time_error.h"
#include "support/reader_match.h"

namespace zendrix::test {
namespace {

constexpr char kPath[] = "/app/KorvessaMonitoring.kvl";

void Require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "the reader and its plain twin differ: %s\n", what.c_str());
  std::abort();
}

}  // namespace

FuzzedConsole::FuzzedConsole() : seams_(platform_.seams()), state_(seams_), log_(state_), plain_(state_) {
  state_.ProgramFolder = "/app";
  log_.on_fatal = [this](const std::string&, const core::RunTimeError& error) { fatal_ = error.number; };
  log_.on_line = [this](const std::string& line) {
    if (line.find("Error in line: ") != std::string::npos) ++logged_;
  };
  reader_ =
      std::make_unique<store::CMkvlf>(state_, log_, [this](int percent) { progress_.push_back(percent); });
  reader_->newAlert.ConnectForever([this] { raised_ = true; });
}

void FuzzedConsole::SetFile(std::string bytes) {
  file_ = std::move(bytes);
  platform_.files.Put(kPath, file_);
}

bool FuzzedConsole::Load() {
  return Step([this] { reader_->InitClass(kPath); }, [this] { plain_.Load(file_); });
}

bool FuzzedConsole::Follow() {
  bool plain_raised = false;
  raised_ = false;
  const bool going_on =
      Step([this] { reader_->LoadNewEvents(); }, [&] { plain_raised = plain_.Follow(file_); });
  if (going_on) Require(raised_ == plain_raised, "newAlert");
  return going_on;
}

bool FuzzedConsole::Step(const std::function<void()>& fast, const std::function<void()>& plain) {
  try {
    fast();
  } catch (const platform::ProcessEnded&) {
    Require(fatal_ != 0, "ended without an error");
  }
  int plain_fatal = 0;
  try {
    plain();
  } catch (const core::RunTimeError& error) {
    plain_fatal = error.number;
  }
  Require(fatal_ == plain_fatal, "error " + std::to_string(fatal_) + " for " + std::to_string(plain_fatal));
  Require(logged_ == plain_.logged, "lines logged");
  if (fatal_ != 0) return false;
  Require(progress_ == plain_.progress, "progress");
  const std::string difference = Difference(*reader_, plain_);
  Require(difference.empty(), difference);
  return true;
}

}  // namespace zendrix::test
