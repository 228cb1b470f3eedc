// Loads the kernel programs and reads their ring buffer.
#include <bpf/btf.h>
#include <bpf/libbpf.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <utility>

#include "agent/bpf/records.h"
#include "agent/bpf/zendrix.skel.h"
#include "agent/host/text.h"
#include "agent/sources/kernel_stream.h"

namespace zendrix::agent {
namespace {

constexpr char kKernelTypes[] = "/sys/kernel/btf/vmlinux";
// The first of its kind has this number on every kernel (include/linux/proc_ns.h).
constexpr char kFirstProcessNamespace[] = "pid:[4026531836]";

// The loader speaks of what it does through a function without a context; the last thing that it said tells
// most about a refusal.
std::string last_word;

int Hear(libbpf_print_level level, const char* format, va_list arguments) {
  if (level != LIBBPF_WARN) return 0;
  std::array<char, 256> text = {};
  if (vsnprintf(text.data(), text.size(), format, arguments) > 0) {
    const std::string_view line = Trim(text.data());
    // Reports of the kernel's check take pages; only what the loader itself says is of use to a person.
    if (line.find('\n') == std::string_view::npos && last_word.empty()) last_word = line;
  }
  return 0;
}

bool Has(std::uint64_t capabilities, unsigned number) {
  return (capabilities >> number & 1U) != 0;
}

// The rights of this process, from the line "CapEff:	000001ffffffffff".
bool MayLoad() {
  constexpr unsigned kSysAdmin = 21;
  constexpr unsigned kPerfmon = 38;
  constexpr unsigned kBpf = 39;
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word) {
    std::uint64_t capabilities = 0;
    if (word != "CapEff:" || !(status >> word) || !ReadHex(word, capabilities)) continue;
    return Has(capabilities, kSysAdmin) || (Has(capabilities, kBpf) && Has(capabilities, kPerfmon));
  }
  return false;
}

// "none [integrity] confidentiality"
bool IsLockedDown() {
  std::ifstream file("/sys/kernel/security/lockdown");
  std::string modes;
  std::getline(file, modes);
  return modes.find("[confidentiality]") != std::string::npos;
}

std::string Refusal(int error) {
  if (error == ENOSYS) return "this kernel takes no programs (BPF)";
  if (IsLockedDown()) return "the kernel is locked down and lets nobody look into it";
  std::string reason = "the kernel refused its programs: ";
  reason += std::strerror(error);
  if (!last_word.empty()) reason += " (" + last_word + ")";
  return reason;
}

// Why there is no use in trying; empty when there is.
std::string Hindrance() {
  if (!MayLoad()) return "the rights to load kernel programs are missing (CAP_BPF and CAP_PERFMON)";
  struct stat facts = {};
  if (stat(kKernelTypes, &facts) != 0) return "this kernel does not describe its types (BTF)";
  std::array<char, 64> own = {};
  const ssize_t length = readlink("/proc/self/ns/pid", own.data(), own.size() - 1);
  if (length > 0 && std::string_view(own.data()) != kFirstProcessNamespace)
    return "the Agent runs in a container, where processes have other numbers than in the kernel";
  return {};
}

bool KernelKnows(const char* event) {
  const std::unique_ptr<btf, void (*)(btf*)> types(btf__load_vmlinux_btf(), btf__free);
  return types && btf__find_by_name_kind(types.get(), event, BTF_KIND_TYPEDEF) > 0;
}

struct Reader {
  const std::function<void(std::string_view)>* take = nullptr;
  std::size_t left = 0;
};

// A negative answer ends the reading; this record has been taken all the same.
int OnRecord(void* context, void* data, std::size_t size) {
  auto& reader = *static_cast<Reader*>(context);
  (*reader.take)(std::string_view(static_cast<const char*>(data), size));
  return --reader.left == 0 ? -EAGAIN : 0;
}

class BpfStream : public KernelStream {
 public:
  // A word on why not; empty when all is attached.
  std::string Open() {
    programs_.reset(zendrix_bpf__open());
    if (!programs_) return Refusal(errno);
    if (!KernelKnows("btf_trace_module_load")) {
      bpf_program__set_autoload(programs_->progs.OnModuleLoad, false);
      lacks_ = "this kernel loads no modules, or does not tell";
    }
    int error = zendrix_bpf__load(programs_.get());
    if (error == 0) error = zendrix_bpf__attach(programs_.get());
    if (error != 0) return Refusal(-error);
    ring_.reset(ring_buffer__new(bpf_map__fd(programs_->maps.ring), OnRecord, &reader_, nullptr));
    return ring_ ? std::string() : Refusal(errno);
  }

  bool Read(std::size_t most, const std::function<void(std::string_view)>& take) override {
    if (most == 0) return true;
    // In front of the reading, so that no record comes unnoticed between the two. One that was being written
    // at this very moment waits for the next, or for the end of the Agent's rest.
    wakes_ = !was_busy_;
    if (wakes_) __atomic_store_n(&programs_->bss->must_wake, 1, __ATOMIC_SEQ_CST);
    reader_ = {&take, most};
    ring_buffer__consume(ring_.get());
    reader_.take = nullptr;
    was_busy_ = most - reader_.left >= kBusy;
    return reader_.left == 0;
  }

  int Handle() const override { return bpf_map__fd(programs_->maps.ring); }
  bool Wakes() const override { return wakes_; }

  std::vector<std::uint64_t> Lost() const override {
    std::vector<std::uint64_t> lost;
    // The kernel counts on while we read.
    for (const auto& count : programs_->bss->lost) lost.push_back(__atomic_load_n(&count, __ATOMIC_RELAXED));
    return lost;
  }

  std::string Lacks() const override { return lacks_; }

 private:
  // With so many records in one reading there will be some in the next one, and to be woken for them is a
  // waste.
  static constexpr std::size_t kBusy = 8;

  struct Freed {
    void operator()(zendrix_bpf* programs) const { zendrix_bpf__destroy(programs); }
    void operator()(ring_buffer* ring) const { ring_buffer__free(ring); }
  };
  Reader reader_;
  bool was_busy_ = false;
  bool wakes_ = false;
  std::string lacks_;
  std::unique_ptr<zendrix_bpf, Freed> programs_;
  std::unique_ptr<ring_buffer, Freed> ring_;
};

}  // namespace

OpenedStream OpenKernelStream() {
  std::string refusal = Hindrance();
  if (!refusal.empty()) return {nullptr, std::move(refusal)};
  last_word.clear();
  libbpf_set_print(Hear);
  auto stream = std::make_unique<BpfStream>();
  refusal = stream->Open();
  if (!refusal.empty()) return {nullptr, std::move(refusal)};
  return {std::move(stream), {}};
}

}  // namespace zendrix::agent
