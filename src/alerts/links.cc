#include "alerts/links.h"

#include <algorithm>
#include <array>

#include "alerts/agent_numbers.h"
#include "core/guards.h"
#include "core/number_rules.h"
#include "core/portal_endpoint.h"
#include "core/text_rules.h"

namespace zendrix::alerts {
namespace {

// A host name loses its first label: "www.example.org" becomes "example.org". Names of two labels and dotted
// numeric addresses stay whole.
std::string_view HostToLookUp(std::string_view host) {
  const auto labels = core::Split(host, ".");
  if (labels.size() < 3 || core::IsNumeric(labels[0], AgentNumbers())) return host;
  return host.substr(labels[0].size() + 1);
}

bool HasPage(std::string_view monitor) {
  static constexpr std::array<std::string_view, 7> kMonitors = {
      "Running Processes", "Listening Ports", "Autorun Registry", "System Users",
      "Logged-on Users",   "Folder Contents", "Windows Folder"};
  return std::find(kMonitors.begin(), kMonitors.end(), monitor) != kMonitors.end();
}

// An address without what would end its quotes or be taken for markup: those characters percent-encoded.
std::string InQuotes(std::string_view address) {
  std::string quoted;
  for (const char character : address) {
    switch (character) {
      case '\'':
        quoted += "%27";
        break;
      case '"':
        quoted += "%22";
        break;
      case '<':
        quoted += "%3C";
        break;
      case '>':
        quoted += "%3E";
        break;
      default:
        quoted += character;
    }
  }
  return quoted;
}

// The portal's address is a template's; in a page it stays inside the quotes.
std::string Base(const core::AppState& state, Purpose purpose) {
  std::string base = core::PortalEndpoint(state);
  return purpose == Purpose::kExact ? base : InQuotes(base);
}

MarkedText Anchor(const core::AppState& state, Purpose purpose, std::string_view monitor,
                  std::string_view description) {
  MarkedText anchor(purpose, "<A HREF='", Origin::kLink);
  const bool is_host = monitor == "TCP Connections";
  if (is_host || HasPage(monitor)) {
    std::string word(monitor);
    std::erase_if(word, [](char character) { return character == ' ' || character == '-'; });
    anchor.Append(Base(state, purpose) + "?PostType=UserGetDescription&Mon=" + word + "&Desc=",
                  Origin::kLink);
    anchor.Append(is_host ? HostToLookUp(description) : description, Origin::kEvent);
  }
  return anchor.Append("'>", Origin::kLink);
}

}  // namespace

MarkedText GetLink(const core::AppState& state, core::ErrorLog& log, Purpose purpose,
                   std::string_view monitor, std::string_view description) {
  MarkedText link(purpose);
  core::OrLog(log, "EventUtils:GetLink", [&] { link = Anchor(state, purpose, monitor, description); });
  return link;
}

MarkedText LinkEnd(Purpose purpose) {
  return MarkedText(purpose, "</A>", Origin::kLink);
}

}  // namespace zendrix::alerts
