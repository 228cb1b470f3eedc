// Readers of the account list and of the login records. Pure functions on text or bytes; what cannot be read
// is left out. Names are raw bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::agent {

// One line of /etc/passwd, as the C library reads it: numbers may begin with blanks and a sign ("+0" is 0),
// fields may lack at the end, and the last one may hold colons.
struct Account {
  std::string name;
  bool no_password = false;  // the password field is empty: nothing is asked
  std::uint64_t uid = 0;
  std::string home;
  std::string shell;
  bool unreadable = false;  // no account as far as can be told; the name is the whole line
};
// Of lines that cannot be read the first twenty are told.
std::vector<Account> ParseAccounts(std::string_view text);

// Whether a login with this shell gives a command line.
bool IsLoginShell(std::string_view shell);

// One user process record of utmp.
struct Login {
  std::string user;
  std::string line;  // terminal
  std::string host;  // computer that the login came from; empty for a local one
};
inline constexpr std::size_t kLoginRecordSize = 384;  // the layout of 64-bit Linux
std::vector<Login> ParseLogins(std::string_view bytes);

// Records of btmp, where failed logins are kept in the same layout; their users need be no accounts.
std::vector<Login> ParseFailures(std::string_view bytes);

}  // namespace zendrix::agent
