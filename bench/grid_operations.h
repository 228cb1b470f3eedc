// Operations of the Administrator console's form, from the whole load to one poll.
#pragma once

#include <string>
#include <vector>

#include "measure.h"

namespace zendrix::bench {

Operation LoadAdmin(const std::string& file, const std::vector<std::string>& arguments);
// The first argument: the number of newer lines (100); the second: the column that the grid is sorted by.
Operation TickAdmin(const std::string& file, const std::vector<std::string>& arguments);
// What a load does at its end for the timeline. The arguments: the number of slots (30), their unit (1), and
// what is counted (D).
Operation FillTimeline(const std::string& file, const std::vector<std::string>& arguments);
// The argument: the column whose header is clicked (8).
Operation SortAdmin(const std::string& file, const std::vector<std::string>& arguments);
// The argument: the pattern that descriptions are filtered by.
Operation FilterAdmin(const std::string& file, const std::vector<std::string>& arguments);
// The argument: the text that is looked for from the first row on.
Operation FindAdmin(const std::string& file, const std::vector<std::string>& arguments);
// The argument: the row whose System State is shown (the one in the middle).
Operation StateAdmin(const std::string& file, const std::vector<std::string>& arguments);

}  // namespace zendrix::bench
