#include "core/portal_endpoint.h"

#include <algorithm>

#include "core/desc_lookup.h"
#include "core/letter_case.h"

namespace zendrix::core {
namespace {

struct Root {
  std::string scheme_and_host;  // lower-cased, without the port
  std::string port;             // with its ":", or empty
};

bool IsPort(std::string_view text) {
  return text.size() > 1 && text.front() == ':' &&
         std::all_of(text.begin() + 1, text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Empty for what is no web address.
Root RootOf(const std::string& address) {
  const std::string lower = LowerCase(address);
  const auto begin = lower.starts_with("http://") ? 7U : lower.starts_with("https://") ? 8U : 0U;
  if (begin == 0) return {};
  const std::string root = lower.substr(0, lower.find_first_of("/?#\\", begin));
  if (root.size() == begin) return {};
  const auto colon = root.rfind(':');
  if (colon < begin || !IsPort(std::string_view(root).substr(colon))) return {root, ""};
  return {root.substr(0, colon), root.substr(colon)};
}

}  // namespace

std::string PortalEndpoint(const AppState& state) {
  std::string base;
  return DescLookup(state.Desc[10], "Central,", base) ? base : state.PortalBase;
}

bool IsOnPortal(const AppState& state, std::string_view url) {
  const Root root = RootOf(PortalEndpoint(state));
  if (root.scheme_and_host.empty()) return false;
  if (!LowerCase(std::string(url.substr(0, root.scheme_and_host.size()))).starts_with(root.scheme_and_host))
    return false;
  std::string_view rest = url.substr(root.scheme_and_host.size());
  if (!root.port.empty() && rest.starts_with(root.port)) rest.remove_prefix(root.port.size());
  return rest.empty() || rest.front() == '/' || rest.front() == '?';
}

}  // namespace zendrix::core
