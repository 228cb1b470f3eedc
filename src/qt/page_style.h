// The style sheet of the console's own pages. Their texts carry the colours of a light page as attributes; in
// the light they stand as they are, in the dark each gets the colour of the palette that means the same.
#pragma once

#include <QString>

namespace zendrix::qt {

struct Tokens;

QString PageStyle(const Tokens& tokens, bool dark);

}  // namespace zendrix::qt
