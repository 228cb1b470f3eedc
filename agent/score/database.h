// A SQLite database as the Agent keeps its memory in one: a file of its own folder that is no link, pipe or
// device, opened by one process at a time. A thin cover over the library
// (https://sqlite.org/c3ref/intro.html): it frees what was taken and turns refusals into values. One thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/result.h"

struct sqlite3;
struct sqlite3_stmt;

namespace zendrix::agent {

class Statement {
 public:
  enum class Outcome { kRow, kDone, kFailed };

  explicit Statement(sqlite3_stmt* statement) : statement_(statement) {}
  // Parameters and columns count from 1 and from 0, as the library has it.
  Statement& Bind(int index, std::int64_t number);
  Statement& Bind(int index, double number);
  Statement& Bind(int index, std::string_view bytes);
  Outcome Step();
  // Steps to the end and makes ready for the next use.
  bool Run();
  void Reset();
  std::int64_t Number(int column) const;
  double Real(int column) const;
  std::string Text(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;  // null: every use fails
};

class Database {
 public:
  enum class Use { kWrite, kReadOnly };

  // An empty path is a database in memory. To be read only, the file has to be there.
  static platform::Result<Database> Open(const std::string& path, Use use = Use::kWrite);

  platform::Status Execute(const std::string& sql);
  Statement Prepare(const std::string& sql) const;
  // The last refusal; whether it says that the file itself is damaged.
  platform::Error LastError() const;
  bool SaysDamaged() const;

 private:
  struct Close {
    void operator()(sqlite3* database) const;
  };
  explicit Database(sqlite3* database) : database_(database) {}
  std::unique_ptr<sqlite3, Close> database_;
};

}  // namespace zendrix::agent
