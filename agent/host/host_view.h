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
#include <utility>
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
  std::int64_t changed_ns = 0;  // last change of contents or of these facts, which nobody can set
};

// Names of a folder's entries, the first ones in byte order.
struct NameList {
  std::vector<std::string> names;
  std::uint64_t left_out = 0;  // further ones that fitted as well

  // In any order; Finish puts them in theirs.
  void Add(std::string name, std::size_t limit) {
    names.push_back(std::move(name));
    std::push_heap(names.begin(), names.end());
    if (names.size() <= limit) return;
    std::pop_heap(names.begin(), names.end());
    names.pop_back();
    ++left_out;
  }
  void Finish() { std::sort_heap(names.begin(), names.end()); }
};

class HostView {
 public:
  virtual ~HostView() = default;
  // The first `limit` bytes of a plain file. Links are followed, because whoever reads these files for the
  // system follows them too. Pipes and devices count as unreadable and are never opened: an open alone wakes
  // whoever waits at the other end of a pipe, and starts what some devices do.
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
  // Up to `limit` bytes of a plain file, beginning with the byte at `from`; empty behind its end.
  virtual std::optional<std::string> ReadFrom(const std::string& path, std::uint64_t from,
                                              std::size_t limit) {
    const auto text = ReadText(path, static_cast<std::size_t>(from) + limit);
    if (!text) return {};
    return from < text->size() ? text->substr(static_cast<std::size_t>(from)) : "";
  }
  // Target of a symbolic link.
  virtual std::optional<std::string> ReadLink(const std::string& path) = 0;
  // Names of a folder's entries in byte order, without "." and "..".
  virtual std::vector<std::string> List(const std::string& folder) = 0;
  // As List, but only names that `wanted` takes, and of these the first `limit`, so that a folder of millions
  // of names takes no more room than one of `limit`.
  virtual NameList ListSome(const std::string& folder, std::size_t limit,
                            const std::function<bool(std::string_view)>& wanted) {
    NameList some;
    for (std::string& name : List(folder)) {
      if (wanted(name)) some.Add(std::move(name), limit);
    }
    some.Finish();
    return some;
  }
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
