#include "alerts/monitor_catalogue.h"

#include <array>

#include "core/letter_case.h"

namespace zendrix::alerts {
namespace {

struct Entry {
  std::string_view name;
  int picture;
  bool in_admin;
};

constexpr std::array<Entry, 19> kMonitors = {{
    {"System", 2, true},
    {"Tcp Connections", 3, true},
    {"Folder Contents", 4, true},
    {"Network Transmission Rate", 5, true},
    {"Logged-on Users", 6, true},
    {"Memory Utilization", 7, true},
    {"Listening Ports", 8, true},
    {"Running Processes", 9, true},
    {"System Users", 10, true},
    {"Tcp Port", 11, true},
    {"Monitor Analysis Agent #1", 12, true},
    {"Monitor Analysis Agent #2", 14, true},
    {"Windows Folder", 4, true},
    {"Test Monitoring Agent", 14, true},
    {"Monitoring Agent", 14, true},
    {"AI Monitor", 14, false},
    {"Autorun Registry", 15, true},
    {"Community", 28, false},
    {"Aggregation", 28, false},
}};

// The grid's list has the four change codes in front of picture 2.
constexpr int kGridOffset = 3;

const Entry* EntryOf(std::string_view monitor) {
  for (const Entry& entry : kMonitors)
    if (core::EqualNoCase(entry.name, monitor)) return &entry;
  return nullptr;
}

int PictureOfChange(std::string_view code) {
  if (code == "A") return 1;
  if (code == "R") return 2;
  if (code == "N") return 3;
  if (code == "B") return 4;
  return 0;
}

}  // namespace

int GetImgNumH3(std::string_view monitor) {
  const Entry* entry = EntryOf(monitor);
  return entry ? entry->picture : kImgListH3Count;
}

int AdminPicture(std::string_view monitor) {
  const Entry* entry = EntryOf(monitor);
  return entry && entry->in_admin ? entry->picture : kImgListH3Count;
}

int GridPicture(int column, std::string_view text) {
  if (column == 4) return PictureOfChange(text);
  if (column != 3) return 0;
  const Entry* entry = EntryOf(text);
  return entry && entry->in_admin ? entry->picture + kGridOffset : kGridPictureCount;
}

std::vector<std::string_view> MonitorNames() {
  std::vector<std::string_view> names;
  for (const Entry& entry : kMonitors) names.push_back(entry.name);
  return names;
}

std::string_view PictureTag(int picture) {
  switch (picture) {
    case 2:
      return "workplace";
    case 4:
      return "folder_closed";
    case 5:
      return "server_client_exchange";
    case 6:
      return "businessman";
    case 7:
      return "data_refresh";
    case 8:
      return "server_connection";
    case 10:
      return "id_card";
    case 12:
      return "security_agent";
    case 15:
      return "cubes";
    case 19:
      return "error";
    case 25:
      return "users1";
    case 26:
      return "bug_green";
    case 27:
      return "bug_yellow";
    case 28:
      return "bug_red";
    case 29:
      return "debug_view";
    default:
      return {};
  }
}

}  // namespace zendrix::alerts
