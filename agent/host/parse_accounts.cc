#include "agent/host/parse_accounts.h"

#include <algorithm>
#include <cstring>

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

}  // namespace

// postgres:x:101:104:PostgreSQL administrator,,,:/var/lib/postgresql:/bin/bash
std::vector<Account> ParseAccounts(std::string_view text) {
  std::vector<Account> accounts;
  for (const std::string_view line : SplitLines(text)) {
    const auto fields = SplitFields(line, ':');
    Account account;
    if (fields.size() != 7 || fields[0].empty() || !ReadNumber(fields[2], account.uid)) continue;
    account.name = fields[0];
    account.no_password = fields[1].empty();
    account.home = fields[5];
    account.shell = fields[6];
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

std::optional<Login> ParseLastFailure(std::string_view bytes) {
  const std::size_t whole = bytes.size() / kLoginRecordSize;
  if (whole == 0) return {};
  const auto record = bytes.substr((whole - 1) * kLoginRecordSize);
  return RecordOf(record);
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
