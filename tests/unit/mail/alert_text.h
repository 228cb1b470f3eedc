// Lines of alerts as the Agent writes them, and mails taken apart.
#pragma once

#include <algorithm>
#include <map>
#include <string>

namespace zendrix::test {

inline std::string AlertText(std::int64_t second, const std::string& code = "AG,1,1",
                             const std::string& description = "Running Processes=/tmp/x:17;",
                             const std::string& risk = "0.98120000000001",
                             const std::string& facts = "runs from /tmp; first seen in 41 days") {
  return std::to_string(second) + ",desk,812,Aggregation|0.9812|" + risk + "|" + description + "|" + facts +
         "|" + code + "|0\r\n";
}

// Undoes quoted-printable.
inline std::string Unquoted(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '=') {
      out += text[i];
    } else {
      const std::string code = text.substr(i + 1, 2);
      if (code != "\r\n") out += static_cast<char>(std::stoi(code, nullptr, 16));
      i += 2;
    }
  }
  return out;
}

struct TakenApart {
  std::map<std::string, std::string> headers;  // folded ones as they stand
  std::string order;                           // the names, each with a blank behind it
  std::string body;                            // decoded
  std::size_t longest_line = 0;
  bool all_ascii = true;
};

inline TakenApart TakeApart(const std::string& mail) {
  TakenApart parts;
  for (const char byte : mail)
    parts.all_ascii = parts.all_ascii && (byte == '\r' || byte == '\n' || (byte >= ' ' && byte <= '~'));
  for (std::size_t at = 0; at < mail.size();) {
    const std::size_t end = mail.find("\r\n", at);
    parts.longest_line = std::max(parts.longest_line, (end == std::string::npos ? mail.size() : end) - at);
    if (end == std::string::npos) break;
    at = end + 2;
  }
  const std::size_t split = mail.find("\r\n\r\n");
  std::string last;
  for (std::size_t at = 0; at < split;) {
    const std::size_t end = mail.find("\r\n", at);
    const std::string line = mail.substr(at, end - at);
    if (line.front() == ' ') {
      parts.headers[last] += "\r\n" + line;
    } else {
      last = line.substr(0, line.find(": "));
      parts.order += last + " ";
      parts.headers[last] = line.substr(line.find(": ") + 2);
    }
    at = end + 2;
  }
  parts.body = Unquoted(mail.substr(split + 4));
  return parts;
}

}  // namespace zendrix::test
