// A monitoring file in memory, its Agent and its reader: verbs for tests of everything that follows the file.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_state.h"
#include "core/error_log.h"
#include "platform/memory/memory_platform.h"
#include "store/event_table.h"
#include "store/reader.h"

namespace zendrix::test {

class StoreFixture : public ::testing::Test {
 protected:
  StoreFixture();
  ~StoreFixture() override;

  static constexpr char kPath[] = "/app/KorvessaMonitoring.kvl";

  // The Agent's side.
  void AppendLine(std::string_view line) { AppendBytes(std::string(line) + "\r\n"); }
  void AppendLines(const std::vector<std::string>& lines);
  void AppendBytes(std::string_view bytes) { platform_.files.PutMore(kPath, bytes); }
  void ReplaceFile(const std::vector<std::string>& lines);
  void RemoveFile() { platform_.files.Vanish(kPath); }

  // The console's side.
  void Load();
  // One poll.
  void Tick() { reader_->LoadNewEvents(); }
  // The process ended on the fatal path while `act` ran, under this procedure and error number.
  void ExpectFatal(const std::function<void()>& act, const std::string& procedure, int number);
  // The next log line must be this one (its message field); lines that no test announced fail the test.
  void ExpectLog(const std::string& message);

  std::uint32_t Rows() const { return reader_->EventTable ? reader_->EventTable->RowCount() : 0; }
  std::string Text(store::Bookmark row, int column) const {
    return std::string(reader_->EventTable->Text(row, column));
  }
  std::int32_t ID(store::Bookmark row) const { return reader_->EventTable->ID(row); }
  // All IDs, and the texts of one column, in table order.
  std::vector<std::int32_t> IDs() const;
  std::vector<std::string> Column(int column) const;
  std::vector<std::string> ColumnNames() const;
  // Rows as "ID|DateUTC|Hostname|...", every column but DateTime.
  std::vector<std::string> Dump() const;
  static std::vector<std::string> Items(const store::CUList& list);
  static std::vector<std::string> Keys(const store::CUList& list);

  // "date,HOST,7,monitor|original|change|description|started|ok,1|"
  static std::string Line(std::string_view date, std::string_view monitor, std::string_view description,
                          std::string_view change = "1");

  platform::MemoryPlatform platform_;
  platform::Seams seams_;
  core::AppState state_;
  core::ErrorLog log_;
  std::vector<int> progress_;
  std::vector<std::string> logged_;
  std::unique_ptr<store::CMkvlf> reader_;
  int alerts_ = 0;  // times that newAlert was raised
};

}  // namespace zendrix::test
