// What the Agent sees of its host: files, links, folders and the table of its sockets, read only. Everything
// it reads can vanish between two calls or refuse to be read; that is ordinary and shows as an empty answer,
// never as an error. Names and contents are raw bytes as the host gives them. Nothing here can change the
// host.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "agent/host/parse_network.h"

namespace zendrix::agent {

enum class EntryKind { kFile, kFolder, kLink, kOther };

struct EntryFacts {
  EntryKind kind = EntryKind::kOther;
  std::uint32_t mode = 0;        // permission bits, set-user-id and set-group-id included
  std::int64_t size = 0;         // bytes
  std::int64_t modified_ns = 0;  // last change of contents, nanoseconds since 1970
  std::uint64_t device = 0;      // with the inode it tells files apart, whatever they are called
  std::uint64_t inode = 0;
};

class HostView {
 public:
  virtual ~HostView() = default;
  // The first `limit` bytes of a plain file (links are followed). Pipes and devices count as unreadable, so
  // that a pipe laid in a watched folder cannot hold the Agent up.
  virtual std::optional<std::string> ReadText(const std::string& path, std::size_t limit) = 0;
  // Hands over the contents of a plain file piece by piece. False when it cannot be read to its end or has
  // more than `limit` bytes; what was handed over means nothing then.
  virtual bool ReadPieces(const std::string& path, std::size_t limit,
                          const std::function<void(std::string_view)>& take) {
    const auto text = ReadText(path, limit + 1);
    if (!text || text->size() > limit) return false;
    take(*text);
    return true;
  }
  // The last `limit` bytes of a plain file that grows by whole records of that size.
  virtual std::optional<std::string> ReadTail(const std::string& path, std::size_t limit) {
    constexpr std::size_t kMost = 1U << 20U;
    const auto text = ReadText(path, kMost);
    if (!text) return {};
    const std::size_t whole = text->size() / limit * limit;
    return text->substr(whole - std::min(whole, limit), limit);
  }
  // Target of a symbolic link.
  virtual std::optional<std::string> ReadLink(const std::string& path) = 0;
  // Names of a folder's entries in byte order, without "." and "..".
  virtual std::vector<std::string> List(const std::string& folder) = 0;
  // Facts about the entry itself; a final link is not followed.
  virtual std::optional<EntryFacts> Look(const std::string& path) = 0;
  // Facts about what the path leads to; links are followed.
  virtual std::optional<EntryFacts> LookThrough(const std::string& path) = 0;
  // The TCP sockets of the Agent's network namespace that listen, connect or are connected, as the kernel
  // answers the question for them; no value where it does not.
  virtual std::optional<std::vector<Socket>> Sockets() { return {}; }
};

// The real host.
std::unique_ptr<HostView> MakeLinuxHostView();

}  // namespace zendrix::agent
