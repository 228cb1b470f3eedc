// What is usual on this host: programs by path and by contents, which program starts which, who talks to
// which address, who opens which port, what starts by itself, accounts, watched files; each with the moment
// when it was first seen, on how many days it was seen, and which package it belongs to. Days are those of
// UTC on which the Agent ran. All of it is in memory, where every question is answered, and goes into the
// file behind it at most once a second in one transaction; what could not be written is written later.
//
// Bounded: when there are too many, those go that were seen on the fewest days and longest ago, and what was
// not seen for half a year goes too. In memory an entry is known by 64 bits of the SHA-256 of its kind and
// key.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "agent/score/keeper.h"

namespace zendrix::agent {

// The values are part of the file.
enum class Known : std::uint8_t {
  kPath = 1,        // a program's path
  kProgram = 2,     // path and contents
  kParent = 3,      // what started it, and its path
  kConnection = 4,  // program, address and port
  kPort = 5,        // port and program
  kAutostart = 6,   // file and command
  kAccount = 7,
  kFile = 8,     // of a watched folder
  kLogin = 9,    // who and from where
  kTalker = 10,  // a program that talks to so many that one more is no news
};

struct PackageOf {
  std::string name;  // empty: of no package
  bool unchanged = false;
};

class Baseline {
 public:
  static constexpr std::size_t kMostEntries = 50000;
  static constexpr std::int64_t kDaysKept = 180;
  static constexpr int kLearningDays = 7;

  // `keeper` outlives the object.
  Baseline(Keeper& keeper, std::int64_t utc);

  // Sets the time of what follows.
  void Tick(std::int64_t utc);

  // On how many days before today it was seen; nothing when it never was.
  std::optional<int> DaysBefore(Known kind, std::string_view key) const;
  // Makes it known; the answer is that of DaysBefore.
  std::optional<int> See(Known kind, std::string_view key, const PackageOf& package = {});

  // Days on which the Agent ran, this one included.
  int days_watched() const { return days_watched_; }
  bool learning() const { return days_watched_ <= kLearningDays; }
  std::size_t size() const { return entries_.size(); }

  // Writes what is new, at most once in a second. At the end of a run it is told to write whatever the time.
  void Save(std::int64_t utc, bool at_once = false);

 private:
  struct Entry {
    std::int64_t first_seen = 0;
    std::int32_t last_day = 0;
    std::uint16_t days = 0;
    Known kind = Known::kPath;
    bool unsaved = false;
  };
  struct Words {
    std::string key;
    PackageOf package;
  };

  void Load();
  void Prune(std::int64_t last_day);
  void MakeRoom();
  void Drop(std::uint64_t id);
  void Touch(std::uint64_t id, Entry& entry);
  int DaysBefore(const Entry& entry) const { return entry.days - (entry.last_day == day_ ? 1 : 0); }
  bool WriteSome(Database& database, std::size_t count) const;

  Keeper& keeper_;
  int generation_ = 0;
  std::int64_t day_ = 0;
  std::int64_t now_ = 0;
  std::int64_t saved_at_ = 0;
  int days_watched_ = 0;
  bool days_unsaved_ = false;
  std::unordered_map<std::uint64_t, Entry> entries_;
  std::vector<std::uint64_t> unsaved_;              // in the order in which they became so
  std::unordered_map<std::uint64_t, Words> words_;  // of entries that were never saved
};

}  // namespace zendrix::agent
