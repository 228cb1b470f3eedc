// The mail about one alert or several, as RFC 5322 wants it: UTF-8 in quoted-printable, told to be made by a
// machine (RFC 3834). Its Message-ID is made of the alerts alone, so that a mail that was handed over twice,
// because its receipt was lost, can be known for one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mail/alert_line.h"
#include "mail/smtp_settings.h"
#include "platform/family_libraries.h"

namespace zendrix::mail {

struct Contents {
  std::vector<Alert> alerts;   // at least one, or `unlisted`
  std::uint64_t unlisted = 0;  // further alerts that only their number is known of
};

// Of a longer list the mail tells those of the highest risk, in the order of time, and the number of the
// rest.
inline constexpr std::size_t kMostListed = 20;

std::string ComposeMail(const MailSettings& settings, const Contents& contents, std::int64_t now_utc,
                        platform::FamilyLibraries& family);

// One that says only that mail arrives.
std::string ComposeTrial(const MailSettings& settings, const std::string& host, std::int64_t now_utc,
                         platform::FamilyLibraries& family);

}  // namespace zendrix::mail
