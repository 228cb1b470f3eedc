#include "mail/smtp_settings.h"

#include <algorithm>
#include <charconv>

#include "core/hash_utils.h"
#include "core/text_rules.h"
#include "core/validation.h"
#include "platform/windows_1252.h"
#include "settings/smtp.h"

namespace zendrix::mail {
namespace {

constexpr int kStandardPort = 25;  // as the screens show it
constexpr int kTlsPort = 465;
constexpr int kHighestPort = 65535;
constexpr std::int64_t kMostBytes = 65536;
constexpr std::size_t kLongestAddress = 254;  // RFC 5321
constexpr std::size_t kLongestServer = 253;

SettingsRead Refused(const char* reason) {
  return {std::nullopt, reason};
}

char Lower(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool SameWord(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

bool IsAddress(std::string_view text) {
  return !text.empty() && text.size() <= kLongestAddress && core::IsValidEmail(text) &&
         std::all_of(text.begin(), text.end(), [](char byte) {
           return byte > ' ' && byte <= '~' &&
                  std::string_view("\\|:;`").find(byte) == std::string_view::npos;
         });
}

bool IsServer(std::string_view text) {
  return text.size() <= kLongestServer && text.front() != '.' && text.front() != '-' &&
         std::all_of(text.begin(), text.end(), [](char byte) {
           return (Lower(byte) >= 'a' && Lower(byte) <= 'z') || (byte >= '0' && byte <= '9') || byte == '.' ||
                  byte == '-' || byte == '_';
         });
}

std::optional<int> PortOf(std::string_view text) {
  if (text.empty()) return kStandardPort;
  int port = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), port);
  const bool whole = read.ec == std::errc() && read.ptr == text.data() + text.size();
  return whole && port > 0 && port <= kHighestPort ? std::optional(port) : std::nullopt;
}

bool HasControl(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return code < 32 || code == 127;
  });
}

// Takes one of the fields behind the console's; the error, or an empty text.
const char* Take(std::string_view field, MailSettings& settings, std::optional<Security>& security) {
  const auto equals = field.find('=');
  if (equals == std::string_view::npos) return "";
  const auto name = core::Trim(field.substr(0, equals));
  const std::string_view value = field.substr(equals + 1);
  if (SameWord(name, "User")) settings.user = platform::Utf8FromBytes(core::Trim(value));
  if (SameWord(name, "Password")) settings.password = platform::Utf8FromBytes(value);
  if (SameWord(name, "From")) settings.from = core::Trim(value);
  if (!SameWord(name, "Security")) return "";
  const auto word = core::Trim(value);
  if (SameWord(word, "STARTTLS"))
    security = Security::kStartTls;
  else if (SameWord(word, "TLS"))
    security = Security::kTls;
  else if (SameWord(word, "None"))
    security = Security::kNone;
  else
    return "the SMTP file's Security is neither STARTTLS nor TLS nor None";
  return "";
}

}  // namespace

SettingsRead ParseMailSettings(std::string_view text) {
  text = text.substr(0, text.find_first_of("\r\n"));
  const auto data = settings::ParseSmtpText(text);
  MailSettings result;
  result.to = core::Trim(data.Address);
  result.server = core::Trim(data.Server);
  if (result.to.empty()) return {};
  // Also what two addresses look like, which the console takes: the second stands where the server is read.
  if (result.server.empty()) return Refused("the SMTP file names no mail server behind one single address");
  if (!IsAddress(result.to)) return Refused("the SMTP file's address is none that mail can go to");
  if (!IsServer(result.server)) return Refused("the SMTP file's server is no name of a computer");
  const auto port = PortOf(core::Trim(data.Port));
  if (!port) return Refused("the SMTP file's port is no number from 1 to 65535");
  result.port = *port;
  std::optional<Security> security;
  const auto fields = core::Split(text, ";");
  for (std::size_t i = 2; i < fields.size(); ++i) {
    const std::string_view error = Take(fields[i], result, security);
    if (!error.empty()) return {std::nullopt, std::string(error)};
  }
  if (result.from.empty()) result.from = result.to;
  if (!IsAddress(result.from)) return Refused("the SMTP file's sender is no address");
  if (HasControl(result.user) || HasControl(result.password)) {
    return Refused("the SMTP file's user or password holds a control character");
  }
  if (!security && result.port == kTlsPort) security = Security::kTls;
  if (!security && !result.user.empty()) security = Security::kStartTls;
  result.security = security.value_or(Security::kWhereOffered);
  if (result.security == Security::kNone && !result.user.empty()) {
    return Refused("the SMTP file has a password go out unencrypted");
  }
  return {result, ""};
}

SettingsRead ReadMailSettings(platform::Files& files, platform::FamilyLibraries& family,
                              const std::string& folder) {
  const std::string path = platform::JoinPath(folder, settings::kSmtpFileName);
  if (!files.Exists(path)) return {std::nullopt, "", true};
  const auto size = files.Size(path);
  if (!size || size.value() > kMostBytes) return Refused("the SMTP file cannot be read");
  const auto bytes = files.ReadAll(path);
  if (!bytes) return Refused("the SMTP file cannot be read");
  core::HashUtils hashes(files, family);
  if (hashes.ReadStoredHash(core::SideFilePath(path)) != family.HashBytes(bytes.value())) {
    return Refused("the SMTP file does not fit its side file");
  }
  return ParseMailSettings(bytes.value());
}

}  // namespace zendrix::mail
