#include "agent/host/parse_accounts.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::int16_t kUserProcess = 7;
constexpr std::size_t kLineAt = 8;
constexpr std::size_t kLineSize = 32;
constexpr std::size_t kUserAt = 44;
constexpr std::size_t kUserSize = 32;
constexpr std::size_t kHostAt = 76;
constexpr std::size_t kHostSize = 256;

// A field ends at its first NUL, or at its width when it has none.
std::string Field(std::string_view record, std::size_t at, std::size_t size) {
  const std::string_view field = record.substr(at, size);
  return std::string(field.substr(0, field.find('\0')));
}

Login RecordOf(std::string_view record) {
  return {Field(record, kUserAt, kUserSize), Field(record, kLineAt, kLineSize),
          Field(record, kHostAt, kHostSize)};
}

constexpr std::size_t kMostUnreadable = 20;
constexpr std::string_view kSpaces = " \t\n\v\f\r";

// strtoul(3) with the base 10, and what is beyond 32 bits becomes the largest number of these.
bool ReadUserNumber(std::string_view text, std::uint64_t& value) {
  constexpr std::uint64_t kLargest = 0xFFFFFFFF;
  text.remove_prefix(std::min(text.find_first_not_of(kSpaces), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return false;
  std::uint64_t number = 0;
  bool overflows = false;
  for (const char digit : text) {
    const auto more = static_cast<std::uint64_t>(digit - '0');
    overflows = overflows || number > (std::numeric_limits<std::uint64_t>::max() - more) / 10;
    if (!overflows) number = number * 10 + more;
  }
  if (overflows) number = std::numeric_limits<std::uint64_t>::max();
  if (negative && !overflows) number = 0 - number;  // it wraps around
  value = std::min(number, kLargest);
  return true;
}

// Seven fields, of which the last holds what is left.
std::array<std::string_view, 7> FieldsOf(std::string_view line) {
  std::array<std::string_view, 7> fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::size_t end = i + 1 < fields.size() ? std::min(line.find(':'), line.size()) : line.size();
    fields.at(i) = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return fields;
}

}  // namespace

// postgres:x:101:104:PostgreSQL administrator,,,:/var/lib/postgresql:/bin/bash
std::vector<Account> ParseAccounts(std::string_view text) {
  std::vector<Account> accounts;
  std::size_t unreadable = 0;
  for (std::string_view line : SplitLines(text)) {
    line.remove_prefix(std::min(line.find_first_not_of(kSpaces), line.size()));
    if (line.empty() || line[0] == '#') continue;
    const auto fields = FieldsOf(line);
    Account account;
    std::uint64_t group = 0;
    account.unreadable =
        fields[0].empty() || !ReadUserNumber(fields[2], account.uid) || !ReadUserNumber(fields[3], group);
    // The users of a directory service (nsswitch.conf(5), "compat").
    const bool is_directory = fields[0].starts_with("+") || fields[0].starts_with("-");
    if (account.unreadable && (is_directory || ++unreadable > kMostUnreadable)) continue;
    account.name = account.unreadable ? line : fields[0];
    if (!account.unreadable) {
      account.no_password = fields[1].empty();
      account.home = fields[5];
      account.shell = fields[6];
    }
    accounts.push_back(std::move(account));
  }
  return accounts;
}

bool IsLoginShell(std::string_view shell) {
  const std::string_view program = shell.substr(shell.rfind('/') + 1);
  // An empty shell field stands for the standard shell.
  static constexpr std::string_view kNoLogin[] = {"nologin", "false", "true", "sync", "halt", "shutdown"};
  return std::find(std::begin(kNoLogin), std::end(kNoLogin), program) == std::end(kNoLogin);
}

std::vector<Login> ParseFailures(std::string_view bytes) {
  std::vector<Login> failures;
  for (; bytes.size() >= kLoginRecordSize; bytes.remove_prefix(kLoginRecordSize))
    failures.push_back(RecordOf(bytes));
  return failures;
}

std::vector<Login> ParseLogins(std::string_view bytes) {
  std::vector<Login> logins;
  for (; bytes.size() >= kLoginRecordSize; bytes.remove_prefix(kLoginRecordSize)) {
    std::int16_t kind = 0;
    std::memcpy(&kind, bytes.data(), sizeof kind);
    if (kind != kUserProcess) continue;
    Login login = RecordOf(bytes);
    if (!login.user.empty()) logins.push_back(std::move(login));
  }
  return logins;
}

}  // namespace zendrix::agent
