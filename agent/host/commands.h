// What a command line that starts by itself runs, and where that lies. Whoever hides a program puts it behind
// a shell, behind "env" or behind an interpreter, or spells its path otherwise ("/usr/../tmp/x", "//tmp/x"),
// so every word is looked at, and the text of "sh -c" word by word. A shell can put a path together in ways
// that no reader finds out; that is not tried.
#pragma once

#include <string>
#include <string_view>

namespace zendrix::agent {

struct Command {
  std::string program;      // behind what only starts another one; its quotes removed; may be a bare name
  std::string temporary;    // first path in it that lies in a temporary folder, normal; empty when none does
  std::string hidden;       // likewise one that is hidden
  bool is_outside = false;  // the program is a path outside the folders that only an administrator fills
};

Command ReadCommand(std::string_view command);

}  // namespace zendrix::agent
