// The user's regional settings, as pictures in the platform's own vocabulary: d, dd, ddd, dddd, M, MM,
// MMM, MMMM, yy, yyyy, h, hh, H, HH, m, mm, s, ss, t, tt; text in '...' stands for itself. Texts are
// single-byte (Windows-1252).
#pragma once

#include <array>
#include <string>

namespace zendrix::platform {

struct LocaleInfo {
  std::string short_date = "MM/dd/yyyy";
  std::string long_date = "dddd, MMMM dd, yyyy";
  std::string time = "hh:mm:ss tt";
  std::string am = "AM";
  std::string pm = "PM";
  std::string date_separator = "/";
  std::string time_separator = ":";
  std::string decimal = ".";
  std::string thousands = ",";
  // Sign that a number may carry when it is read ("$5"); empty when there is none in the code page.
  std::string currency = "$";
  // Digits in each group from the point leftwards; 0 ends the list and repeats the one before it ("3;0"),
  // a list that does not end in 0 groups no further ("3"); empty groups nothing.
  std::string grouping = "3;0";
  // Form of negative numbers: 0 "(1)", 1 "-1", 2 "- 1", 3 "1-", 4 "1 -".
  int negative_order = 1;
  // Short-date order: 0 month-day-year, 1 day-month-year, 2 year-month-day.
  int date_order = 0;
  std::array<std::string, 7> day_names = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                          "Thursday", "Friday", "Saturday"};
  std::array<std::string, 7> short_day_names = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  std::array<std::string, 12> month_names = {"January",   "February", "March",    "April",
                                             "May",       "June",     "July",     "August",
                                             "September", "October",  "November", "December"};
  std::array<std::string, 12> short_month_names = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

  bool operator==(const LocaleInfo&) const = default;
};

class LocaleSource {
 public:
  virtual ~LocaleSource() = default;
  // The settings of the current user. The reference stays valid for the life of the source.
  virtual const LocaleInfo& Current() = 0;
};

}  // namespace zendrix::platform
