// Windows program files for tests, made here from the published layout: a header, two sections, and resources
// with an icon and a version. Nothing in them can be run. Every place that a reader goes by has a name, so
// that a test can break exactly that.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace zendrix::testing {

struct PeFile {
  std::array<std::uint16_t, 4> version = {1, 2, 0, 3};
  bool plus = false;           // PE32+ instead of PE32
  bool has_version = true;     // otherwise there is only the icon
  int named = 0;               // named types in front of the numbered ones
  std::size_t extra = 0;       // bytes of other contents between the headers and the resources
  std::size_t trailing = 100;  // bytes behind the resources

  std::string Bytes() const;

  // Places in Bytes().
  static constexpr std::size_t kPe = 0x80;
  static constexpr std::size_t kCoff = kPe + 4;
  static constexpr std::size_t kOptional = kCoff + 20;
  std::size_t Directories() const { return kOptional + (plus ? 112 : 96); }
  std::size_t Sections() const { return kOptional + OptionalSize(); }
  std::size_t Resources() const { return 0x400 + extra; }
  std::size_t Types() const { return Resources(); }
  std::size_t VersionType() const { return Types() + 16 + 8 * (static_cast<std::size_t>(named) + 1); }
  std::size_t Names() const { return Resources() + 0x100; }
  std::size_t Languages() const { return Resources() + 0x140; }
  std::size_t DataEntry() const { return Resources() + 0x180; }
  std::size_t Version() const { return Resources() + 0x200; }
  std::size_t FixedInfo() const { return Version() + 40; }

 private:
  std::size_t OptionalSize() const { return plus ? 0xF0 : 0xE0; }
};

// Writes numbers into a file's bytes, low byte first.
void PutWord(std::string& bytes, std::size_t at, std::uint32_t value);
void PutDouble(std::string& bytes, std::size_t at, std::uint32_t value);

}  // namespace zendrix::testing
