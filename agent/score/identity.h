// What an alert is known by. The console files a user's decision under the code of an earlier alert with the
// same text in its Change column, without that code's last field, and takes the place of every line that
// holds this code anywhere. So
//  - a code names what the alert is about, and nothing else: "AG," and 24 hexadecimal digits of a sum;
//  - the risk carries ten digits more than it needs, taken from the same sum: alerts about two things never
//  have
//    the same Change. Should they by chance, one of them is given the next number;
//  - all codes have one width, so that none is the beginning of another.
// The sum is made with a key of this host's own, so that nobody can look for a name that meets another's
// code.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace zendrix::agent {

inline constexpr std::size_t kCodeDigits = 24;

// "AG,0123456789ABCDEF01234567". `about` is the host's bytes, such as a program's path.
std::string AlertCode(std::string_view key, std::string_view about);

class Identities {
 public:
  // The text of the Change column: four decimals of the risk, then ten that name the code. At most 0.9899 and
  // the ten, so that full risk is not passed; negative for what is stored but no alert. Equal results mean
  // equal codes.
  std::string ChangeOf(double risk, bool is_alert, const std::string& code);

 private:
  static constexpr std::size_t kMost = 20000;
  std::map<std::string, std::string> codes_;  // by Change
};

}  // namespace zendrix::agent
