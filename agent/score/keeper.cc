#include "agent/score/keeper.h"

#include <cstdio>
#include <utility>

namespace zendrix::agent {
namespace {

// In columns: days since 1970; seconds since 1970. "known" is the baseline, the others the alerts and what
// was decided about them.
constexpr const char* kSchema = R"(
PRAGMA journal_mode = TRUNCATE;
PRAGMA synchronous = NORMAL;
PRAGMA cache_size = -512;
CREATE TABLE IF NOT EXISTS meta (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE IF NOT EXISTS known (id INTEGER PRIMARY KEY, kind INTEGER NOT NULL, key TEXT NOT NULL,
  first_seen INTEGER NOT NULL, last_day INTEGER NOT NULL, days INTEGER NOT NULL,
  package TEXT NOT NULL, unchanged INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS alerts (number INTEGER PRIMARY KEY, second INTEGER NOT NULL, code TEXT NOT NULL, change TEXT NOT NULL,
  subject TEXT NOT NULL, sha256 TEXT NOT NULL, risk REAL NOT NULL, doubt REAL NOT NULL, needed REAL NOT NULL,
  package_factor REAL NOT NULL, days_watched INTEGER NOT NULL, state INTEGER NOT NULL, package TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS facts (alert INTEGER NOT NULL, position INTEGER NOT NULL, number INTEGER NOT NULL,
  text TEXT NOT NULL, weight REAL NOT NULL, full_weight REAL NOT NULL, days INTEGER NOT NULL,
  count INTEGER NOT NULL, hard INTEGER NOT NULL, topic INTEGER NOT NULL, PRIMARY KEY (alert, position)) WITHOUT ROWID;
CREATE TABLE IF NOT EXISTS decisions (code TEXT PRIMARY KEY, block INTEGER NOT NULL, sha256 TEXT NOT NULL,
  hard TEXT NOT NULL, until INTEGER NOT NULL) WITHOUT ROWID;
)";

enum class Health { kSound, kDamaged, kUnusable };

Health HealthOf(Database& database) {
  Statement check = database.Prepare("PRAGMA quick_check(1)");
  const auto outcome = check.Step();
  if (outcome == Statement::Outcome::kRow && check.Text(0) != "ok") return Health::kDamaged;
  if (outcome == Statement::Outcome::kFailed && database.SaysDamaged()) return Health::kDamaged;
  if (outcome == Statement::Outcome::kFailed) return Health::kUnusable;
  if (database.Execute(kSchema)) return Health::kSound;
  return database.SaysDamaged() ? Health::kDamaged : Health::kUnusable;
}

}  // namespace

Keeper::Keeper(std::string path, std::int64_t utc) : path_(std::move(path)) {
  Open(utc);
}

void Keeper::Open(std::int64_t utc) {
  if (!path_.empty()) {
    if (TryOpen()) return;
    if (damaged_) {
      SetAside(utc);
      if (TryOpen()) return;
    }
    Tell("What is usual here cannot be kept; it is known for this run only; " + why_);
  }
  auto memory = Database::Open("");
  if (!memory) throw std::bad_alloc();  // nothing else can refuse it
  database_ = std::move(memory.value());
  if (!database_->Execute(kSchema)) throw std::bad_alloc();
}

bool Keeper::TryOpen() {
  database_.reset();
  damaged_ = false;
  auto opened = Database::Open(path_);
  if (!opened) {
    why_ = opened.error().text;
    return false;
  }
  database_ = std::move(opened.value());
  const Health health = HealthOf(*database_);
  if (health == Health::kSound) return true;
  damaged_ = health == Health::kDamaged;
  why_ = database_->LastError().text;
  return false;
}

void Keeper::SetAside(std::int64_t utc) {
  database_.reset();
  const std::string aside = path_ + ".damaged-" + std::to_string(utc);
  const bool done = std::rename(path_.c_str(), aside.c_str()) == 0;
  // Its journal belongs to it and would be played into the new one.
  std::remove((path_ + "-journal").c_str());
  Tell(done ? "The memory of what is usual here was damaged; it is now " + aside + " and a new one begins"
            : "The memory of what is usual here is damaged and cannot be set aside");
}

bool Keeper::Write(const std::function<bool(Database&)>& write, std::int64_t utc) {
  const bool begun = database_->Execute("BEGIN IMMEDIATE").ok();
  const bool done = begun && write(*database_) && database_->Execute("COMMIT").ok();
  if (done) {
    if (failing_) Tell("What is usual here can be kept again");
    failing_ = false;
    return true;
  }
  const platform::Error error = database_->LastError();
  const bool damaged = database_->SaysDamaged();
  if (begun) static_cast<void>(database_->Execute("ROLLBACK"));
  if (damaged && !path_.empty()) {
    SetAside(utc);
    Open(utc);
    ++generation_;
    return false;
  }
  if (!failing_) Tell("What is usual here cannot be kept for now; " + error.text);
  failing_ = true;
  return false;
}

std::vector<std::string> Keeper::TakeMessages() {
  return std::exchange(messages_, {});
}

void Keeper::Tell(const std::string& message) {
  constexpr std::size_t kMost = 100;
  if (messages_.size() < kMost) messages_.push_back(message);
}

}  // namespace zendrix::agent
