#include "alerts/templates.h"

#include <algorithm>

#include "core/path_text.h"
#include "core/text_rules.h"

namespace zendrix::alerts {

std::optional<std::string> FindTemplate(const core::DescArray& lines, std::string_view key) {
  const auto line = std::find_if(lines.begin(), lines.end(),
                                 [&](const std::string& text) { return core::Contains(text, key); });
  if (line == lines.end()) return std::nullopt;
  return line->substr(key.size());
}

MarkedText IconTag(const core::AppState& state, Purpose purpose, std::string_view image) {
  return IconTag(state, purpose, image, MarkedText(purpose));
}

MarkedText IconTag(const core::AppState& state, Purpose purpose, std::string_view image,
                   const MarkedText& behind) {
  MarkedText tag(purpose, "<p><p><IMG SRC='");
  tag.Append(AppPath(state), Origin::kEventInLink)
      .Append(image)
      .Append(behind)
      .Append("' ALIGN=bottom HSPACE=4>");
  return tag;
}

std::string AppPath(const core::AppState& state) {
  return core::PathText(state.ProgramFolder);
}

}  // namespace zendrix::alerts
