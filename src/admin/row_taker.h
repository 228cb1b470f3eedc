// Turns lines of the monitoring file into rows of one view, for one load. What a load asks once for each
// source (the lists, the name in proper case, whether the monitor is displayed) is remembered by the text of
// the three fields together, of which a file has few.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "admin/event_grid.h"
#include "admin/event_rows.h"
#include "admin/grid_line.h"
#include "store/text_pool.h"
#include "store/ulist.h"

namespace zendrix::admin {

// What lines are added to. The lists are keyed by the field as it was read; that of monitors holds the names
// in proper case.
struct LoadTargets {
  EventRows& rows;
  EventGrid& grid;  // a view of these rows
  store::CUList& monitors;
  store::CUList& hosts;
  store::CUList& changes;
};

// Whether a monitor is displayed; nothing where the settings do not know it.
using MonitorQuestion = std::function<std::optional<bool>(const std::string& monitor)>;

class RowTaker {
 public:
  // Monitors that the settings do not know are added to `unknown_monitors`, each once.
  RowTaker(LoadTargets targets, const LoadSettings& settings, MonitorQuestion is_displayed,
           std::vector<std::string>& unknown_monitors);

  // A line split into its fields, whose description is being fetched from memory: finding it is most of the
  // work of a load, so that lines are prepared a few at a time, then all of them fetched, then all taken.
  struct Prepared {
    std::optional<GridRowFields> fields;
    store::TextPool::Hashed description{};
  };
  // The line is changed, and referred to.
  Prepared Prepare(std::span<char> line) const;
  void Fetch(std::span<const Prepared> lines) const;
  // A line that gives a row inserts it at the top.
  void Take(const Prepared& line, std::int32_t number);

 private:
  struct Source {
    std::uint32_t number;
    bool displayed;
  };

  const Source& SourceOf(const GridRowFields& fields);
  bool IsDisplayed(const std::string& monitor);
  bool ReadTime(std::string_view field);

  LoadTargets targets_;
  platform::LocaleInfo locale_;
  MonitorQuestion is_displayed_;
  store::TextPool known_;        // host, monitor and code as they stand in the lines
  std::vector<Source> sources_;  // by their numbers, from 1
  std::unordered_map<std::string, bool> displayed_;
  std::vector<std::string>& unknown_monitors_;
  std::int32_t time_key_ = 0;
};

}  // namespace zendrix::admin
