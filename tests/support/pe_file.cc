#include "support/pe_file.h"

namespace zendrix::testing {
namespace {

constexpr std::uint32_t kResourceAddress = 0x2000;
constexpr std::size_t kResourceSize = 0x400;
constexpr std::uint32_t kIsTable = 0x80000000;

void PutText(std::string& bytes, std::size_t at, const std::string& text) {
  bytes.replace(at, text.size(), text);
}

void PutSection(std::string& bytes, std::size_t at, const std::string& name, std::uint32_t address,
                std::size_t size, std::size_t place) {
  PutText(bytes, at, name);
  PutDouble(bytes, at + 8, static_cast<std::uint32_t>(size));
  PutDouble(bytes, at + 12, address);
  PutDouble(bytes, at + 16, static_cast<std::uint32_t>(size));
  PutDouble(bytes, at + 20, static_cast<std::uint32_t>(place));
}

void PutEntry(std::string& bytes, std::size_t at, std::uint32_t id, std::uint32_t to) {
  PutDouble(bytes, at, id);
  PutDouble(bytes, at + 4, to);
}

}  // namespace

void PutWord(std::string& bytes, std::size_t at, std::uint32_t value) {
  bytes.at(at) = static_cast<char>(value & 0xFF);
  bytes.at(at + 1) = static_cast<char>(value >> 8 & 0xFF);
}

void PutDouble(std::string& bytes, std::size_t at, std::uint32_t value) {
  PutWord(bytes, at, value);
  PutWord(bytes, at + 2, value >> 16);
}

std::string PeFile::Bytes() const {
  std::string bytes(Resources() + kResourceSize + trailing, '\0');
  PutText(bytes, 0, "MZ");
  PutDouble(bytes, 60, kPe);
  PutText(bytes, kPe, std::string("PE\0\0", 4));
  PutWord(bytes, kCoff, plus ? 0x8664 : 0x14C);
  PutWord(bytes, kCoff + 2, 2);
  PutWord(bytes, kCoff + 16, static_cast<std::uint32_t>(OptionalSize()));
  PutWord(bytes, kOptional, plus ? 0x20B : 0x10B);
  PutDouble(bytes, Directories() - 4, 16);
  PutDouble(bytes, Directories() + 16, kResourceAddress);
  PutDouble(bytes, Directories() + 20, kResourceSize);
  PutSection(bytes, Sections(), ".text", 0x10000000, 0x100 + extra, 0x300);
  PutSection(bytes, Sections() + 40, ".rsrc", kResourceAddress, kResourceSize, Resources());

  const auto inside = [&](std::size_t place) { return static_cast<std::uint32_t>(place - Resources()); };
  PutWord(bytes, Types() + 12, static_cast<std::uint32_t>(named));
  PutWord(bytes, Types() + 14, has_version ? 2 : 1);
  for (int i = 0; i < named; ++i)
    PutEntry(bytes, Types() + 16 + 8 * static_cast<std::size_t>(i), kIsTable | 0x3F0,
             kIsTable | inside(Names()));
  PutEntry(bytes, VersionType() - 8, 3, kIsTable | inside(Names()));
  if (has_version) PutEntry(bytes, VersionType(), 16, kIsTable | inside(Names()));
  PutWord(bytes, Names() + 14, 1);
  PutEntry(bytes, Names() + 16, 1, kIsTable | inside(Languages()));
  PutWord(bytes, Languages() + 14, 1);
  PutEntry(bytes, Languages() + 16, 0x409, inside(DataEntry()));
  PutDouble(bytes, DataEntry(), kResourceAddress + inside(Version()));
  PutDouble(bytes, DataEntry() + 4, 92);

  PutWord(bytes, Version(), 92);
  PutWord(bytes, Version() + 2, 52);
  const std::string key = "VS_VERSION_INFO";
  for (std::size_t i = 0; i < key.size(); ++i) bytes.at(Version() + 6 + 2 * i) = key[i];
  PutDouble(bytes, FixedInfo(), 0xFEEF04BD);
  PutDouble(bytes, FixedInfo() + 4, 0x10000);
  PutWord(bytes, FixedInfo() + 8, version[1]);
  PutWord(bytes, FixedInfo() + 10, version[0]);
  PutWord(bytes, FixedInfo() + 12, version[3]);
  PutWord(bytes, FixedInfo() + 14, version[2]);
  return bytes;
}

}  // namespace zendrix::testing
