// KorvessaIntermediateTypes: quarantine of files and the host's identifier, as flat functions that any
// language can call. The library is loaded when first needed. Texts are single-byte, ended by a NUL. Nothing
// here throws.
#pragma once

#include <cstdint>

namespace zendrix::family {

// What the functions of quarantine return that fill a message, 0 beside them.
inline constexpr std::int32_t kRefused = 1;
// The file is somebody else's, or lies where this user may not look: one who has more rights could do it.
inline constexpr std::int32_t kForWantOfRights = 2;

extern "C" {

// Where the Quarantine folder is (the console's program folder), and whether to act: with `pretend` other
// than 0 every check is made and every message is the one that acting would give, but nothing is moved. Comes
// before the others.
void ConfigureExport(const char* program_folder, std::int32_t pretend);

// Moves the file that the description of an event names into the Quarantine folder. 0 when it was moved; in
// every case `message` holds a plain sentence for the user, ended by a NUL within `size` characters.
std::int32_t QuarantineExport(const char* description, char* message, std::int32_t size);

// An event with all that the rules of quarantine ask of it. The functions above take the description alone:
// its kind is then told by its form, and where that leaves a doubt, or where the moment of the event would be
// needed, they refuse.
struct QuarantineArguments {
  std::int32_t size = sizeof(QuarantineArguments);
  std::int32_t shown = 1;  // whether the alert's page has a row for the event
  const char* monitor = nullptr;
  const char* description = nullptr;
  const char* event_utc = nullptr;  // UTC seconds in decimal; empty or null when not known
  const char* alert = nullptr;      // the alert's DateUTC, kept with the file
};
std::int32_t QuarantineEventExport(const QuarantineArguments* event, char* message, std::int32_t size);
std::int32_t UnquarantineEventExport(const QuarantineArguments* event, char* message, std::int32_t size);

// What is in quarantine, put away last first: one line per entry, ended by a line feed, of fields separated
// by tabs: name, size, SHA-256, moment of the move (UTC seconds), the file's owner, the alert's DateUTC, path
// (texts with bytes below 33, "%" and 127 as %xx). Returns the length of the whole; it was written, with a
// NUL behind it, when that is less than `size`. -1 when it cannot be had: `text` is the sentence that says
// why.
std::int32_t QuarantineListExport(char* text, std::int32_t size);

// Puts the entry with this name back where it was; otherwise as UnquarantineExport.
std::int32_t RestoreExport(const char* name, char* message, std::int32_t size);

// Puts the file back where it was, with owner, mode and times. Refuses to overwrite.
std::int32_t UnquarantineExport(const char* description, char* message, std::int32_t size);

// A stable identifier of this host for a product: derived from the machine's id by a keyed hash, so that the
// id itself never leaves the machine. 64 hexadecimal digits and a NUL; 0 when it could be had.
std::int32_t GetHostIDExport(const char* product, char* buffer, std::int32_t size);

}  // extern "C"

}  // namespace zendrix::family
