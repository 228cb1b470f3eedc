// The commands. Each takes the words behind its name, prints its documents through the console, and throws
// WrongUsage or NoSuchThing where the arguments do not fit.
#pragma once

#include <string>
#include <vector>

namespace zendrix::inspect {

class Console;

using Words = std::vector<std::string>;

// A command by name; null when there is none.
using Command = void (*)(Console& console, const Words& words);
Command FindCommand(const std::string& name);

// Event store.
void Events(Console& console, const Words& words);
void Follow(Console& console, const Words& words);
void Log(Console& console, const Words& words);
void Desc(Console& console, const Words& words);
void Hash(Console& console, const Words& words);

// Settings and single rules.
void Settings(Console& console, const Words& words);
void Ini(Console& console, const Words& words);
void Smtp(Console& console, const Words& words);
void Valid(Console& console, const Words& words);
void Token(Console& console, const Words& words);
void Risk(Console& console, const Words& words);

// Alerts.
void Alerts(Console& console, const Words& words);
void Alert(Console& console, const Words& words);
void Decide(Console& console, const Words& words);
void Act(Console& console, const Words& words);
void Wizard(Console& console, const Words& words);
void Checked(Console& console, const Words& words);
void Link(Console& console, const Words& words);
void Portal(Console& console, const Words& words);
void Status(Console& console, const Words& words);
void Quarantine(Console& console, const Words& words);

// The Administrator's grid.
void Grid(Console& console, const Words& words);

// Begins with "-" and is neither that alone nor a number with its sign.
bool LooksLikeOption(const std::string& word);
// One call of the arguments' count; usage is what to tell otherwise.
void RequireWords(const Words& words, std::size_t least, std::size_t most, const char* usage);

}  // namespace zendrix::inspect
