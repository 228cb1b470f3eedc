#include "core/portal_endpoint.h"

#include "core/desc_lookup.h"

namespace zendrix::core {

std::string PortalEndpoint(const AppState& state) {
  std::string base;
  return DescLookup(state.Desc[10], "Central,", base) ? base : state.PortalBase;
}

}  // namespace zendrix::core
