#include "platform/memory/faulty_files.h"

#include "platform/process.h"

namespace zendrix::platform {

template <class BeforeEnd>
Status FaultyFiles::Begin(Effect effect, BeforeEnd before_end) {
  // Not thrown again: destructors that tidy up on the way out call here too.
  if (killed_) return Error{ErrorKind::kUnavailable, "the process has ended"};
  if (effect == Effect::kRead && !count_reads_) return Done{};
  ++operations_;
  if (operations_ == fail_at_) return Error{fail_kind_, "injected fault"};
  if (operations_ == kill_at_) {
    before_end();
    killed_ = true;
    throw ProcessEnded{kKilledStatus};
  }
  return Done{};
}

Status FaultyFiles::Begin(Effect effect) {
  return Begin(effect, [] {});
}

bool FaultyFiles::Exists(const std::string& path) {
  return below_.Exists(path);
}

bool FaultyFiles::FolderExists(const std::string& path) {
  return below_.FolderExists(path);
}

Result<std::int64_t> FaultyFiles::Size(const std::string& path) {
  if (const Status allowed = Begin(Effect::kRead); !allowed) return allowed.error();
  return below_.Size(path);
}

Result<std::unique_ptr<ReadStream>> FaultyFiles::Open(const std::string& path) {
  if (const Status allowed = Begin(Effect::kRead); !allowed) return allowed.error();
  return below_.Open(path);
}

Status FaultyFiles::WriteAll(const std::string& path, std::string_view bytes) {
  if (Status allowed = Begin(Effect::kChange); !allowed) return allowed;
  return below_.WriteAll(path, bytes);
}

Status FaultyFiles::Append(const std::string& path, std::string_view bytes) {
  const auto torn = [&] {
    if (appended_ > 0) static_cast<void>(below_.Append(path, bytes.substr(0, appended_)));
  };
  if (Status allowed = Begin(Effect::kChange, torn); !allowed) return allowed;
  return below_.Append(path, bytes);
}

Status FaultyFiles::Remove(const std::string& path) {
  if (Status allowed = Begin(Effect::kChange); !allowed) return allowed;
  return below_.Remove(path);
}

Status FaultyFiles::Rename(const std::string& from, const std::string& to) {
  if (Status allowed = Begin(Effect::kChange); !allowed) return allowed;
  return below_.Rename(from, to);
}

Result<std::vector<std::string>> FaultyFiles::List(const std::string& folder) {
  if (const Status allowed = Begin(Effect::kRead); !allowed) return allowed.error();
  return below_.List(folder);
}

}  // namespace zendrix::platform
