// What the renderers share: looking up a template, its fixed texts, and the icon tag.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "alerts/marked_text.h"
#include "core/app_state.h"

namespace zendrix::alerts {

inline constexpr char kDescriptionFileError[] = "* Error with Description file * ";

// The payload of the first line that contains the key: the line without as many leading characters as the key
// is long, since keys are expected at the start of the line. Nothing when no line has it.
std::optional<std::string> FindTemplate(const core::DescArray& lines, std::string_view key);

// The picture in front of a text; `image` is its path under the program folder, "\Images\bug_red.png".
MarkedText IconTag(const core::AppState& state, Purpose purpose, std::string_view image);
// The same with more behind the path, inside the tag's quotes.
MarkedText IconTag(const core::AppState& state, Purpose purpose, std::string_view image,
                   const MarkedText& behind);

// The folder of the program as pages name it: AppPath. In front of a picture it is appended as what stands
// inside a link: a folder may be named with quotes, "?" or "#".
std::string AppPath(const core::AppState& state);

}  // namespace zendrix::alerts
