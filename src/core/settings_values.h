// The settings as the program holds them, under their given names. They are filled by ReadRegInfo; every part
// of the program reads them from AppState.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zendrix::core {

// One key and its value, as a section of the settings file lists them.
using KeyValue = std::pair<std::string, std::string>;

struct Settings {
  std::vector<KeyValue> MonitorStates;  // "1" shown, "0" not
  std::vector<KeyValue> ColumnStates;
  std::int32_t SelColor = 0;
  std::int32_t SSColor = 0;
  std::uint8_t NSlots = 0;
  std::uint8_t TSlots = 0;
  std::string TChart;
  std::string ldAlert;
  std::string ldErlog;
  std::string ldUIErlog;
  std::string enblAlr;
  float ShRskLvl = 0;            // lowest risk percent that the alert list shows
  bool ShowDetailsOpen = false;  // key DetSho
  std::string IniDate;
  std::string TSurv;
  std::string TTour;
  float Sensitivity = 0;    // key Se
  float NormalTop = 0;      // key No: a risk percent
  float SuspiciousTop = 0;  // key Su: a risk percent
  float NormalFrom = 0;
  float SuspiciousFrom = 0;
  float IntrusionFrom = 0;
  bool PopOrigHigh = false;
  bool PopNotifyMs = false;
  bool DontAsk = false;
};

}  // namespace zendrix::core
