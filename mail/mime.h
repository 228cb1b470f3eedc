// The parts of a mail that text from outside goes through: RFC 5322 (lines, headers), RFC 2045
// (quoted-printable) and RFC 2047 (encoded words). Whatever the text holds, a header stays one header and a
// line of the body stays within 76 characters, all of them printable ASCII.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zendrix::mail {

// The text as a header's value: as it stands when it is plain and short, otherwise UTF-8 in encoded words,
// each on a line of its own behind the first. Control characters become blanks.
std::string HeaderText(std::string_view utf8);

// A body: LF in `utf8` ends a line; every other control character but the tab is encoded. Lines end in CR LF,
// the last one too.
std::string QuotedPrintable(std::string_view utf8);

// "Sun, 22 Nov 2026 18:00:00 +0000" of UTC seconds.
std::string HeaderDate(std::int64_t second);

}  // namespace zendrix::mail
