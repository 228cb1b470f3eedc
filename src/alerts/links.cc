#include "alerts/links.h"

#include <algorithm>
#include <array>

#include "core/number_rules.h"
#include "core/portal_endpoint.h"
#include "core/text_rules.h"

namespace zendrix::alerts {
namespace {

// A host name loses its first label: "www.example.org" becomes "example.org". Names of two labels and dotted
// numeric addresses stay whole.
std::string HostToLookUp(std::string_view host, const platform::LocaleInfo& locale) {
  const auto labels = core::Split(host, ".");
  if (labels.size() < 3 || core::IsNumeric(labels[0], locale)) return std::string(host);
  return std::string(host.substr(labels[0].size() + 1));
}

bool HasPage(std::string_view monitor) {
  static constexpr std::array<std::string_view, 7> kMonitors = {
      "Running Processes", "Listening Ports", "Autorun Registry", "System Users",
      "Logged-on Users",   "Folder Contents", "Windows Folder"};
  return std::find(kMonitors.begin(), kMonitors.end(), monitor) != kMonitors.end();
}

}  // namespace

MarkedText GetLink(const core::AppState& state, Purpose purpose, std::string_view monitor,
                   std::string_view description) {
  MarkedText anchor(purpose, "<A HREF='");
  const bool is_host = monitor == "TCP Connections";
  if (is_host || HasPage(monitor)) {
    std::string word(monitor);
    std::erase_if(word, [](char character) { return character == ' ' || character == '-'; });
    anchor.Append(core::PortalEndpoint(state)).Append("?PostType=UserGetDescription&Mon=").Append(word);
    anchor.Append("&Desc=").Append(
        is_host ? HostToLookUp(description, state.seams.locale.Current()) : std::string(description),
        Origin::kEventInLink);
  }
  anchor.Append("'>");
  return anchor;
}

}  // namespace zendrix::alerts
