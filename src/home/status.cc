#include "home/status.h"

#include "core/desc_lookup.h"

namespace zendrix::home {

const char* FlagOf(int status) {
  if (status == kImmediate) return "FlagR";
  return status == kAttention ? "FlagY" : "FlagG";
}

std::string StatusText(const core::AppState& state, int group, int status) {
  std::string text;
  const std::string key = std::to_string(group) + "," + std::to_string(status) + ",";
  return core::DescLookup(state.Desc[1], key, text) ? text : core::kDescriptionNotAvailable;
}

StatusRow::StatusRow(int view)
    : Flag(Indexed("Flag", view)),
      icView(Indexed("icView", view), CaptionOf(view)),
      icDesc(Indexed("icDesc", view)) {}

}  // namespace zendrix::home
