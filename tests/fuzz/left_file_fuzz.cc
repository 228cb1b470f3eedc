// A monitoring file that a stranger, or a kill, left where the Agent goes on: taking it up never crashes, and
// what is then written stands behind it in lines of its own, later than every second that the file ends with.
// The first byte chooses the form.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "agent/record/event_file.h"
#include "platform/memory/fake_clock.h"
#include "platform/memory/memory_files.h"

namespace {

using namespace zendrix;

constexpr char kPath[] = "/z/KorvessaMonitoring.kvl";
constexpr std::int64_t kNow = 1700000000;

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto form = data[0] % 2 == 0 ? agent::Form::kHome : agent::Form::kAdmin;
  const std::string left(reinterpret_cast<const char*>(data) + 1, size - 1);
  platform::MemoryFiles files;
  platform::FakeClock clock;
  clock.SetUtc(kNow);
  files.Put(kPath, left);
  agent::EventFile file(files, clock, kPath, form);
  if (!file.Open()) {
    Require(files.Get(kPath) == left);
    return 0;
  }
  Require(file.LastSecondWritten() >= 0 && file.LastSecondWritten() < (1LL << 31));
  const bool is_far = file.IsFarAhead();
  Require(is_far == (!left.empty() && file.LastSecondWritten() > kNow + agent::EventFile::kMostAhead));
  if (is_far || file.IsFull()) {
    const auto aside = file.PutAside();
    Require(aside.ok() && files.Get(aside.value()) == left && files.Get(kPath).empty());
  }
  const std::string kept = files.Get(kPath);
  const std::int64_t second = file.NextSecond();
  Require(second >= kNow && second <= kNow + agent::EventFile::kMostAhead + 1);
  Require(second > file.LastSecondWritten());
  const std::string line = std::to_string(second) + ",h,1,M|0|0|d|r|c|0\r\n";
  Require(file.Append({line, second, 1}).ok() && !file.WasReplaced());
  const std::string end = kept.empty() || kept.back() == '\n' ? "" : ",\r\n";
  Require(files.Get(kPath) == kept + end + line);
  return 0;
}
