#include "qt/page_style.h"

#include <utility>

#include "qt/theme.h"

namespace zendrix::qt {
namespace {

constexpr char kBoth[] =
    "body { margin: 12px; line-height: 1.45; overflow-wrap: anywhere; }"
    "a { border-radius: 3px; } a:focus-visible { outline: 2px solid; outline-offset: 2px; }";
// An attribute's colour gives way to a rule's.
constexpr char kDark[] =
    ":root { color-scheme: dark; }"
    "body { background: @base; color: @text; }"
    "font[color='#00009D' i] { color: @text; }"
    "[bgcolor='#0052A5' i] { background: @accent; } font[color='#0052A5' i] { color: @link; }"
    "font[color='#FFFFFF' i] { color: @onaccent; }"
    "a:link, a:visited { color: @link; }";

}  // namespace

QString PageStyle(const Tokens& tokens, bool dark) {
  QString style = QString::fromLatin1(kBoth);
  if (!dark) return style;
  style += QString::fromLatin1(kDark);
  const std::pair<const char*, QColor> names[] = {{"@base", tokens.base},
                                                  {"@text", tokens.text},
                                                  {"@onaccent", tokens.on_accent},
                                                  {"@accent", tokens.accent},
                                                  {"@link", tokens.link}};
  for (const auto& [name, colour] : names) style.replace(QLatin1String(name), colour.name());
  return style;
}

}  // namespace zendrix::qt
