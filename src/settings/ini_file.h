// The text of a sectioned settings file, with the reading and writing rules of the platform's profile
// functions (GetPrivateProfileString, GetPrivateProfileInt, WritePrivateProfileString). Bytes in, bytes and
// values out; no file is touched here. Texts are single-byte (Windows-1252).
//
// Every line keeps its bytes unless it is itself written or deleted, so that comments, blank lines and the
// order of the file outlive any change. Section and key names do not regard case; of several sections or keys
// of one name the first counts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings_values.h"

namespace zendrix::settings {

class IniFile {
 public:
  IniFile() = default;
  explicit IniFile(std::string_view bytes);

  // The whole file. A file that was only read comes back byte for byte.
  std::string Bytes() const;

  // What a buffer of `size` bytes (final NUL included) receives: the value without its outer quotes, or the
  // default without its trailing blanks, cut to size - 1.
  std::string GetString(std::string_view section, std::string_view key, std::string_view default_value,
                        std::size_t size) const;
  // Leading digits of the value with an optional sign, modulo 2^32: decimal, or hexadecimal, octal or binary
  // behind "0x", "0o" or "0b". 0 for a text without digits, the default for an absent key or an empty value.
  std::uint32_t GetInt(std::string_view section, std::string_view key, std::int32_t default_value) const;
  // Names of the keys of a section, or of all sections, each followed by a NUL, cut to size - 2; the default
  // when there are none.
  std::string KeyNames(std::string_view section, std::string_view default_value, std::size_t size) const;
  std::string SectionNames(std::string_view default_value, std::size_t size) const;

  // All keys of a section with their values as GetString gives them, an empty one for a line without "=". Of
  // two keys of one name the first is the one that counts.
  std::vector<core::KeyValue> Keys(std::string_view section, std::size_t size) const;

  // Replaces a value in place, or adds the key behind the last one of its section, or adds the section at the
  // end. The texts are written as given, but for blanks around a new name.
  void Set(std::string_view section, std::string_view key, std::string_view value);
  void DeleteKey(std::string_view section, std::string_view key);
  // Comments of the section stay.
  void DeleteSection(std::string_view section);

 private:
  enum class Kind { kBlank, kComment, kSection, kEntry, kBareName };
  struct Line {
    Kind kind = Kind::kBlank;
    std::string text;  // without the line end
    std::string end;   // "\r\n", "\n", or empty for a last line that is not ended
    std::string name;  // of a section, an entry ("name=value") or a bare name
    std::size_t value_at = 0;
  };

  static std::vector<Line> LinesOf(std::string_view bytes);
  static Line MakeLine(std::string_view text, std::string_view end);
  // The value of an entry, without its outer quotes; nothing for a bare name.
  static std::string_view ValueOf(const Line& line);
  static bool IsKey(const Line& line) { return line.kind == Kind::kEntry || line.kind == Kind::kBareName; }

  // Index of the header; the number of lines when there is none.
  std::size_t FindSection(std::string_view section) const;
  // Index of the header of the next section, or the number of lines.
  std::size_t EndOfSection(std::size_t header) const;
  std::size_t FindKey(std::size_t header, std::string_view key) const;
  void Splice(std::size_t at, std::size_t count, std::string_view bytes);
  // Gives an unended last line its end, so that something can stand behind it.
  void EndLine(std::size_t at);

  std::vector<Line> lines_;
};

// WritePrivateProfileString on the bytes of a file, nothing standing for a file that does not exist. No key
// deletes the section, no value deletes the key; a deletion creates a missing file empty. False, and nothing
// done, without a section.
bool WriteProfileString(std::optional<std::string_view> section, std::optional<std::string_view> key,
                        std::optional<std::string_view> value, std::optional<std::string>& file);

}  // namespace zendrix::settings
