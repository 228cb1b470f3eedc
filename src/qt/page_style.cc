#include "qt/page_style.h"

#include <utility>

#include "qt/theme.h"

namespace zendrix::qt {
namespace {

constexpr char kBoth[] =
    "body { margin: 12px; line-height: 1.45; overflow-wrap: anywhere; }"
    // The pages' markup opens paragraphs in front of each picture: nothing is in the first, and in a cell the
    // second would push the picture below the line that it belongs to.
    "p:empty { display: none; } td p { margin: 0; }"
    "::-webkit-scrollbar { width: 12px; height: 12px; }"
    "::-webkit-scrollbar-thumb { background: @scroll; border: 3px solid transparent; border-radius: 6px;"
    " background-clip: content-box; }"
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
  if (dark) style += QString::fromLatin1(kDark);
  const std::pair<const char*, QColor> names[] = {{"@base", tokens.base},          {"@text", tokens.text},
                                                  {"@onaccent", tokens.on_accent}, {"@accent", tokens.accent},
                                                  {"@link", tokens.link},          {"@scroll", tokens.faint}};
  for (const auto& [name, colour] : names) style.replace(QLatin1String(name), colour.name());
  return style;
}

}  // namespace zendrix::qt
