// A reader and its plain twin on one file in memory. Every step is made by both; a difference ends the
// program.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/app_state.h"
#include "core/error_log.h"
#include "platform/memory/memory_platform.h"
#include "store/reader.h"
#include "support/plain_reader.h"

namespace zendrix::test {

class FuzzedConsole {
 public:
  FuzzedConsole();

  void SetFile(std::string bytes);
  const std::string& file() const { return file_; }
  // False when the process would have ended.
  bool Load();
  bool Follow();

 private:
  bool Step(const std::function<void()>& fast, const std::function<void()>& plain);

  platform::MemoryPlatform platform_;
  platform::Seams seams_;
  core::AppState state_;
  core::ErrorLog log_;
  std::string file_;
  std::vector<int> progress_;
  int fatal_ = 0;
  int logged_ = 0;
  bool raised_ = false;
  std::unique_ptr<store::CMkvlf> reader_;
  PlainReader plain_;
};

}  // namespace zendrix::test
