// The only place where the program's single-byte texts (Windows-1252) become the toolkit's and back. Event
// text is chosen by whoever the console is meant to catch: widgets show what comes from here as plain text,
// and where the toolkit would guess at markup (tool tips) the text is escaped first.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace zendrix::qt {

QString ToQt(std::string_view bytes);
std::string FromQt(const QString& text);
// For a tool tip, which would otherwise be read as markup whenever it looks like it.
QString ToolTipText(std::string_view bytes);
// For buttons and menus: "&" keeps its meaning only where a caption of the program says so.
QString WithoutAccessKeys(const QString& text);
// The same, with the first `key` in the text, in either case, as its access key; none when it is not there.
QString WithAccessKey(const QString& text, QChar key);
// Host paths are UTF-8 bytes.
QString PathToQt(const std::string& path);
std::string PathFromQt(const QString& path);

}  // namespace zendrix::qt
