// The reader's rules in their plainest form, one text at a time, as a measure for the fast one: what a full
// load and an incremental load make of the bytes of a file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/app_state.h"

namespace zendrix::test {

class PlainReader {
 public:
  explicit PlainReader(core::AppState& state) : state_(state) {}

  // Both may raise core::RunTimeError. The file is given whole each time.
  void Load(std::string_view file);
  // Whether the event was raised.
  bool Follow(std::string_view file);

  // Rows as texts, column after column; empty columns at the end are left out.
  std::vector<std::vector<std::string>> rows;
  std::size_t columns = 11;
  std::vector<std::pair<std::string, std::string>> monitors, hosts, originals;  // key and item
  std::vector<int> progress;
  std::int64_t last_line = 0;
  std::int64_t last_size = 0;
  std::string last_date;
  std::optional<std::size_t> bookmark;
  bool reloaded = false;
  int logged = 0;  // lines about a stamp of the wrong kind

 private:
  std::vector<std::string> FillRow(const std::vector<std::string>& fields, std::int64_t counter, bool first);
  void AddRows(const std::vector<std::string>& fields, std::int64_t& counter, bool incremental);
  void Offer(const std::vector<std::string>& fields, bool incremental);
  void Finish(std::vector<std::string> row, const std::vector<std::string>& fields, std::string description);

  core::AppState& state_;
};

}  // namespace zendrix::test
