// A quarantine in a folder of its own, files to put away, and the words to speak of them.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
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

// Paths in the text are told without the folder of the test's files.
struct Outcome {
  bool done = false;
  std::string text;
  std::string whole;  // as it was said
};

constexpr char kContents[] = "#!/bin/sh\nexit 0\n";

class QuarantineTest : public testing::Test {
 protected:
  explicit QuarantineTest(bool across = false)
      : home_(test::Devices().one),
        there_(across ? test::Devices().other : test::Devices().one),
        program_(home_.path() + "/program"),
        files_(there_.path() + "/files"),
        store_(program_ + "/Quarantine"),
        proc_(home_.path() + "/proc"),
        records_(home_.path() + "/dpkg"),
        autostart_(there_.path() + "/autostart"),
        system_(there_.path() + "/system") {
    for (const auto& folder : {program_, files_, autostart_, system_})
      std::filesystem::create_directory(folder);
    std::filesystem::create_directories(records_ + "/info");
    std::filesystem::create_directories(proc_ + "/self/ns");
    std::filesystem::create_directories(proc_ + "/net");
    for (const char* table : {"/net/tcp", "/net/tcp6"})
      std::ofstream(proc_ + table) << "  sl  local_address\n";
    std::ofstream(proc_ + "/self/ns/mnt") << "own";
    std::filesystem::create_directories(proc_ + "/1");
    std::ofstream(proc_ + "/1/stat") << "1 (init) S 0\n";
    std::ofstream(proc_ + "/stat") << "cpu 1 2 3\nbtime " << kBoot << "\n";
    outside_.proc = proc_;
    outside_.package_records = records_;
    outside_.rpm = outside_.pacman = "";
    outside_.autostart_places = {autostart_};
    outside_.system_places = {system_};
    outside_.now = [this] { return now_; };
    // A busy machine takes longer than a click may; tests of these limits set their own.
    outside_.most_time = outside_.tool_time = std::chrono::minutes(10);
    quarantine_.SetOutside(outside_);
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
  Outcome Tell(Operation&& operation) {
    // Who clicks is who runs this, also in a child process that has given up its rights.
    if (!as_somebody_) outside_.user = geteuid();
    quarantine_.SetOutside(outside_);
    Outcome outcome;
    try {
      outcome.whole = operation();
      outcome.done = true;
    } catch (const Refused& refused) {
      outcome.whole = refused.sentence;
    }
    outcome.text = outcome.whole;
    const std::string folder = files_ + "/";
    for (std::size_t at; (at = outcome.text.find(folder)) != std::string::npos;)
      outcome.text.erase(at, folder.size());
    return outcome;
  }
  Outcome PutAway(const Event& event) {
    return Tell([&] { return quarantine_.PutAway(event); });
  }
  Outcome PutBack(const Event& event) {
    return Tell([&] { return quarantine_.PutBack(event); });
  }
  // An event of which nothing is known but its description, and that it was later than all files here.
  static Event Named(const std::string& description) {
    return {"", description, time(nullptr) + kAnHour, "", true};
  }
  Outcome PutAway(const std::string& description) { return PutAway(Named(description)); }
  Outcome PutBack(const std::string& description) { return PutBack(Named(description)); }
  // What was said when it went.
  std::string ExpectGoesAndComesBack(const std::string& path, const Event& event) {
    const Look before = LookAt(path);
    const Outcome away = PutAway(event);
    EXPECT_TRUE(away.done) << event.description << ": " << away.text;
    EXPECT_FALSE(LookAt(path).there) << event.description;
    const Outcome back = PutBack(event);
    EXPECT_TRUE(back.done) << event.description << ": " << back.text;
    EXPECT_EQ(LookAt(path), before) << event.description;
    return away.text;
  }
  // The click is that of another user than the one who runs this.
  void ClickAs(uid_t user) {
    as_somebody_ = true;
    outside_.user = user;
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
    for (const auto& path : {program_, files_, autostart_, system_})
      if (chown(path.c_str(), test::kNobody, test::kNobody) != 0) throw std::runtime_error("no chown");
  }

  const Scratch home_;
  const Scratch there_;
  const std::string program_;
  const std::string files_;
  const std::string store_;
  // A computer of the test's own: processes, records of packages, autostart entries, a folder of the system.
  static constexpr std::int64_t kBoot = 1795000000;
  static constexpr std::int64_t kAnHour = 3600;
  // Its clock is ahead: whatever a test does to its files is earlier than the event, and that has been.
  const std::int64_t now_ = time(nullptr) + 2 * kAnHour;
  const std::string proc_, records_, autostart_, system_;
  Outside outside_;
  bool as_somebody_ = false;
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
