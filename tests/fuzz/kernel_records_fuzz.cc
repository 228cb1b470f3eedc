// What the kernel programs might leave in their ring buffer, damaged in every way: records in a row, each
// behind two bytes of length. No record may crash a reader, no text may leave uncleaned, and nothing may go
// that never came.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "agent/sources/bpf_source.h"
#include "agent/sources/memory/recorded_kernel_stream.h"
#include "fuzz/sound_source.h"

namespace {

using namespace zendrix::agent;

std::unique_ptr<RecordedKernelStream> StreamOf(std::string_view bytes) {
  auto stream = std::make_unique<RecordedKernelStream>();
  while (bytes.size() > 2) {
    const auto low = static_cast<unsigned char>(bytes[0]);
    const auto high = static_cast<unsigned char>(bytes[1]);
    const std::size_t size = low | static_cast<std::size_t>(high) << 8U;
    stream->Play(std::string(bytes.substr(2, size)));
    bytes.remove_prefix(std::min(bytes.size(), 2 + size));
  }
  return stream;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FakeHost host = HostOfTwo();
  OpenedStream opened;
  opened.stream = StreamOf({reinterpret_cast<const char*>(data), size});
  std::int64_t now_ns = 1'000'000'000;
  BpfSource source({host, 50, [&] { return now_ns; }}, std::move(opened));
  RequireSound(source, now_ns, BpfSource::kLookEveryNs);
  return 0;
}
