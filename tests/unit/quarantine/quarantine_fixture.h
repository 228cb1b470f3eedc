// A quarantine in a folder of its own, files to put away, and the words to speak of them.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "family/intermediate/file_work.h"
#include "family/intermediate/quarantine.h"
#include "unit/quarantine/devices.h"

namespace zendrix::family {

// All that a file must have when it is back in its place. Looking does not touch the access time; only plain
// files have one here, for others cannot be looked at without a change.
struct Look {
  bool there = false;
  uid_t owner = 0;
  gid_t group = 0;
  mode_t mode = 0;
  timespec accessed = {};
  timespec modified = {};
  nlink_t links = 0;
  std::string contents;  // of a plain file; the target of a link

  bool operator==(const Look& o) const {
    const auto same = [](const timespec& a, const timespec& b) {
      return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
    };
    return there == o.there && owner == o.owner && group == o.group && mode == o.mode && links == o.links &&
           contents == o.contents && same(accessed, o.accessed) && same(modified, o.modified);
  }
  friend std::ostream& operator<<(std::ostream& out, const Look& look) {
    if (!look.there) return out << "nothing";
    return out << std::oct << look.mode << std::dec << " of " << look.owner << ":" << look.group << ", "
               << look.contents.size() << " bytes, " << look.links << " names, accessed "
               << look.accessed.tv_sec << "." << look.accessed.tv_nsec << ", modified "
               << look.modified.tv_sec << "." << look.modified.tv_nsec;
  }
};

inline Look LookAt(const std::string& path) {
  Look look;
  struct stat status = {};
  if (lstat(path.c_str(), &status) != 0) return look;
  look = {true,           status.st_uid,  status.st_gid,   status.st_mode,
          status.st_atim, status.st_mtim, status.st_nlink, ""};
  if (S_ISLNK(status.st_mode)) look.contents = std::filesystem::read_symlink(path).string();
  if (!S_ISREG(status.st_mode)) {
    look.accessed = {};
    return look;
  }
  const int file = open(path.c_str(), O_RDONLY | O_NOATIME | O_CLOEXEC);
  char block[4096];
  for (ssize_t got; (got = read(file, block, sizeof block)) > 0;)
    look.contents.append(block, static_cast<std::size_t>(got));
  if (file >= 0) close(file);
  return look;
}

inline std::vector<std::string> NamesOf(const std::string& folder) {
  std::vector<std::string> names;
  if (std::filesystem::exists(folder))
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

class Scratch {
 public:
  explicit Scratch(const std::string& base) : path_(base + "/zendrix-quar-XXXXXX") {
    if (!mkdtemp(path_.data())) throw std::runtime_error("no temporary folder to be had");
    chmod(path_.c_str(), 0755);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

struct Outcome {
  bool done = false;
  std::string text;
};

constexpr char kContents[] = "#!/bin/sh\nexit 0\n";

class QuarantineTest : public testing::Test {
 protected:
  explicit QuarantineTest(bool across = false)
      : home_(test::Devices().one),
        there_(across ? test::Devices().other : test::Devices().one),
        program_(home_.path() + "/program"),
        files_(there_.path() + "/files"),
        store_(program_ + "/Quarantine") {
    std::filesystem::create_directory(program_);
    std::filesystem::create_directory(files_);
    quarantine_.Configure(program_, false);
  }

  std::string Path(const std::string& name) const { return files_ + "/" + name; }

  // A new file with old times.
  std::string Make(const std::string& name, const std::string& contents = kContents, mode_t mode = 0755) {
    const std::string path = Path(name);
    unlink(path.c_str());
    std::ofstream(path, std::ios::binary) << contents;
    chmod(path.c_str(), mode);
    const timespec times[2] = {{1099958400, 123456789}, {1099872000, 987654321}};
    utimensat(AT_FDCWD, path.c_str(), times, 0);
    return path;
  }

  template <class Operation>
  static Outcome Tell(Operation&& operation) {
    try {
      return {true, operation()};
    } catch (const Refused& refused) {
      return {false, refused.sentence};
    }
  }
  Outcome PutAway(const std::string& description) {
    return Tell([&] { return quarantine_.PutAway(description); });
  }
  Outcome PutBack(const std::string& description) {
    return Tell([&] { return quarantine_.PutBack(description); });
  }
  void ExpectRefused(const Outcome& outcome, const std::string& part) {
    EXPECT_FALSE(outcome.done) << outcome.text;
    EXPECT_NE(outcome.text.find(part), std::string::npos) << outcome.text;
  }

  std::vector<std::string> Stored() const { return NamesOf(store_); }
  // The path in the store of the one entry that there is.
  std::string TheEntry() const {
    const auto names = Stored();
    EXPECT_EQ(names.size(), 2U) << testing::PrintToString(names);
    return names.empty() ? "" : store_ + "/" + names[0];
  }

  // The folders are those of an ordinary user.
  void GiveToNobody() const {
    if (geteuid() != 0) return;
    for (const auto& path : {program_, files_})
      if (chown(path.c_str(), test::kNobody, test::kNobody) != 0) throw std::runtime_error("no chown");
  }

  const Scratch home_;
  const Scratch there_;
  const std::string program_;
  const std::string files_;
  const std::string store_;
  Quarantine quarantine_;
};

// Within one file system and across two.
class BothWays : public QuarantineTest, public testing::WithParamInterface<bool> {
 protected:
  BothWays() : QuarantineTest(GetParam()) {}
};

inline std::string WayName(const testing::TestParamInfo<bool>& info) {
  return info.param ? "AcrossFileSystems" : "WithinOneFileSystem";
}

}  // namespace zendrix::family
