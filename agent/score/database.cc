#include "agent/score/database.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <climits>
#include <cstdlib>

namespace zendrix::agent {
namespace {

// The library refuses a link anywhere on the way, so the folder is given as it really is.
std::string RealPath(const std::string& path) {
  const auto slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  char real[PATH_MAX];
  if (::realpath(folder.c_str(), real) == nullptr) return path;
  return std::string(real) + "/" + path.substr(slash == std::string::npos ? 0 : slash + 1);
}

platform::Error ErrorOf(sqlite3* database) {
  const int code = database == nullptr ? SQLITE_NOMEM : sqlite3_errcode(database);
  platform::ErrorKind kind = platform::ErrorKind::kOther;
  if (code == SQLITE_FULL) kind = platform::ErrorKind::kNoSpace;
  if (code == SQLITE_PERM || code == SQLITE_READONLY || code == SQLITE_AUTH)
    kind = platform::ErrorKind::kPermissionDenied;
  return {kind, database == nullptr ? "no memory" : sqlite3_errmsg(database)};
}

}  // namespace

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

Statement& Statement::Bind(int index, std::int64_t number) {
  if (statement_) sqlite3_bind_int64(statement_.get(), index, number);
  return *this;
}

Statement& Statement::Bind(int index, double number) {
  if (statement_) sqlite3_bind_double(statement_.get(), index, number);
  return *this;
}

Statement& Statement::Bind(int index, std::string_view bytes) {
  // Names are the host's bytes and need be no UTF-8; the library keeps them as they are.
  if (statement_) {
    sqlite3_bind_text64(statement_.get(), index, bytes.data() == nullptr ? "" : bytes.data(), bytes.size(),
                        SQLITE_TRANSIENT, SQLITE_UTF8);
  }
  return *this;
}

Statement::Outcome Statement::Step() {
  if (!statement_) return Outcome::kFailed;
  const int code = sqlite3_step(statement_.get());
  return code == SQLITE_ROW ? Outcome::kRow : code == SQLITE_DONE ? Outcome::kDone : Outcome::kFailed;
}

bool Statement::Run() {
  Outcome outcome = Step();
  while (outcome == Outcome::kRow) outcome = Step();
  Reset();
  return outcome == Outcome::kDone;
}

void Statement::Reset() {
  if (statement_) sqlite3_reset(statement_.get());
}

std::int64_t Statement::Number(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

double Statement::Real(int column) const {
  return sqlite3_column_double(statement_.get(), column);
}

std::string Statement::Text(int column) const {
  const unsigned char* const bytes = sqlite3_column_text(statement_.get(), column);
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return bytes == nullptr ? std::string()
                          : std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

void Database::Close::operator()(sqlite3* database) const {
  sqlite3_close_v2(database);
}

platform::Result<Database> Database::Open(const std::string& path, Use use) {
  const std::string place = path.empty() ? ":memory:" : RealPath(path);
  struct stat facts = {};
  if (!path.empty() && ::lstat(place.c_str(), &facts) == 0 && !S_ISREG(facts.st_mode)) {
    return platform::Error{platform::ErrorKind::kNotRegular, place + " is no plain file"};
  }
  sqlite3* raw = nullptr;
  const int access = use == Use::kWrite ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE : SQLITE_OPEN_READONLY;
  const int flags = access | SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_NOMUTEX;
  const int code = sqlite3_open_v2(place.c_str(), &raw, flags, nullptr);
  Database database(raw);
  if (code != SQLITE_OK) return ErrorOf(raw);
  sqlite3_extended_result_codes(raw, 0);
  sqlite3_busy_timeout(raw, 200);
  // Nothing of a damaged file may be run: no functions in the schema, no page that is not checked.
  sqlite3_db_config(raw, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(raw, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  return database;
}

platform::Status Database::Execute(const std::string& sql) {
  if (sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) return LastError();
  return platform::Done{};
}

Statement Database::Prepare(const std::string& sql) const {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database_.get(), sql.c_str(), static_cast<int>(sql.size()), &statement, nullptr);
  return Statement(statement);
}

platform::Error Database::LastError() const {
  return ErrorOf(database_.get());
}

bool Database::SaysDamaged() const {
  const int code = sqlite3_errcode(database_.get());
  return code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
}

}  // namespace zendrix::agent
