#include "platform/pe_version.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace zendrix::platform {
namespace {

// The published layout; sizes and places in bytes.
constexpr std::size_t kDosHeaderSize = 64;
constexpr std::size_t kPlaceOfPeHeader = 60;  // in the DOS header
constexpr std::string_view kPeSignature("PE\0\0", 4);
constexpr std::size_t kCoffHeaderSize = 20;
constexpr std::size_t kSectionCount = 2;         // in the COFF header
constexpr std::size_t kOptionalHeaderSize = 16;  // in the COFF header
constexpr std::uint16_t kPe32 = 0x10B;
constexpr std::uint16_t kPe32Plus = 0x20B;
constexpr std::size_t kDirectories = 96;  // in the optional header of PE32; 16 further on in PE32+
constexpr std::size_t kPe32PlusShift = 16;
constexpr std::size_t kDirectorySize = 8;
constexpr std::size_t kResourceDirectory = 2;
constexpr std::size_t kSectionSize = 40;
constexpr std::size_t kMostSections = 96;  // that the loader takes
constexpr std::size_t kTableSize = 16;     // the head of a resource table
constexpr std::size_t kEntrySize = 8;
// Entries are sorted and the wanted numbers small, so that a table's beginning is enough.
constexpr std::size_t kMostEntries = 512;
constexpr std::uint32_t kVersionType = 16;
constexpr std::uint32_t kVersionName = 1;
constexpr std::uint32_t kIsTable = 0x80000000;
constexpr std::size_t kDataEntrySize = 16;
constexpr std::size_t kFixedInfo = 40;  // in the version resource, behind its name
constexpr std::size_t kFixedInfoSize = 52;
constexpr std::uint32_t kFixedInfoSignature = 0xFEEF04BD;
constexpr std::string_view kVersionKey("V\0S\0_\0V\0E\0R\0S\0I\0O\0N\0_\0I\0N\0F\0O\0\0\0", 32);

std::uint32_t Word(std::string_view bytes, std::size_t at) {
  return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at])) |
         static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 1])) << 8;
}

std::uint32_t Double(std::string_view bytes, std::size_t at) {
  return Word(bytes, at) | Word(bytes, at + 2) << 16;
}

// Thrown and caught in this file: the layout is broken here.
struct Broken {};

void Require(bool holds) {
  if (!holds) throw Broken{};
}

// A part of the image in memory, and where the file has it.
struct Section {
  std::uint64_t address, size, place;
};

class Image {
 public:
  explicit Image(ReadStream& stream) : stream_(stream) {}

  std::string Version() {
    ReadHeaders();
    const std::uint32_t names = TableOf(EntryOf(0, kVersionType));
    const std::uint32_t languages = TableOf(EntryOf(names, kVersionName));
    // The first language stands for all.
    const std::uint32_t entry = EntryOf(languages, std::nullopt);
    Require((entry & kIsTable) == 0);
    const std::string data = AtAddress(resources_ + entry, kDataEntrySize);
    Require(Double(data, 4) >= kFixedInfo + kFixedInfoSize);
    const std::string info = AtAddress(Double(data, 0), kFixedInfo + kFixedInfoSize);
    const std::string_view fixed = std::string_view(info).substr(kFixedInfo);
    Require(Word(info, 2) == kFixedInfoSize && std::string_view(info).substr(6, 32) == kVersionKey &&
            Double(fixed, 0) == kFixedInfoSignature);
    std::string version;
    for (const std::size_t at : {10, 8, 14, 12}) {
      if (!version.empty()) version += ".";
      version += std::to_string(Word(fixed, at));
    }
    return version;
  }

 private:
  std::string AtPlace(std::uint64_t place, std::size_t size) {
    Require(size <= kMostReadForVersion - read_);
    read_ += size;
    std::string bytes(size, '\0');
    Require(stream_.Seek(static_cast<std::int64_t>(place)).ok());
    for (std::size_t done = 0; done < size;) {
      const auto count = stream_.Read(bytes.data() + done, size - done);
      Require(count.ok() && count.value() > 0);
      done += count.value();
    }
    return bytes;
  }

  // A piece of the image lies whole in one section's part of the file.
  std::string AtAddress(std::uint64_t address, std::size_t size) {
    const auto section = std::find_if(sections_.begin(), sections_.end(), [&](const Section& each) {
      return address >= each.address && address + size <= each.address + each.size;
    });
    Require(section != sections_.end());
    return AtPlace(section->place + (address - section->address), size);
  }

  void ReadHeaders() {
    const std::string dos = AtPlace(0, kDosHeaderSize);
    Require(dos.starts_with("MZ"));
    const std::uint64_t pe = Double(dos, kPlaceOfPeHeader);
    const std::string head = AtPlace(pe, kPeSignature.size() + kCoffHeaderSize);
    Require(head.starts_with(kPeSignature));
    const std::string_view coff = std::string_view(head).substr(kPeSignature.size());
    const std::size_t sections = Word(coff, kSectionCount);
    const std::size_t optional_size = Word(coff, kOptionalHeaderSize);
    Require(sections <= kMostSections);
    const std::uint64_t optional = pe + head.size();
    const std::uint32_t magic = Word(AtPlace(optional, 2), 0);
    Require(magic == kPe32 || magic == kPe32Plus);
    const std::size_t directories = kDirectories + (magic == kPe32Plus ? kPe32PlusShift : 0);
    const std::size_t wanted = directories + kResourceDirectory * kDirectorySize;
    Require(wanted + kDirectorySize <= optional_size);
    // How many directories there are stands right before the first.
    Require(Double(AtPlace(optional + directories - 4, 4), 0) > kResourceDirectory);
    resources_ = Double(AtPlace(optional + wanted, 4), 0);
    Require(resources_ != 0);
    const std::string table = AtPlace(optional + optional_size, sections * kSectionSize);
    for (std::size_t at = 0; at < table.size(); at += kSectionSize)
      sections_.push_back({Double(table, at + 12), Double(table, at + 16), Double(table, at + 20)});
  }

  // What the entry with this number, or the first of all, leads to. `table` counts from the resources'
  // beginning.
  std::uint32_t EntryOf(std::uint32_t table, std::optional<std::uint32_t> number) {
    const std::string head = AtAddress(resources_ + table, kTableSize);
    const std::size_t named = Word(head, 12);
    const std::size_t numbered = Word(head, 14);
    std::uint64_t first = resources_ + table + kTableSize;
    std::size_t count = named + numbered;
    if (number) {
      first += named * kEntrySize;
      count = numbered;
    }
    const std::string entries = AtAddress(first, std::min(number ? kMostEntries : 1, count) * kEntrySize);
    for (std::size_t at = 0; at < entries.size(); at += kEntrySize)
      if (!number || Double(entries, at) == *number) return Double(entries, at + 4);
    throw Broken{};
  }

  static std::uint32_t TableOf(std::uint32_t entry) {
    Require((entry & kIsTable) != 0);
    return entry & ~kIsTable;
  }

  ReadStream& stream_;
  std::size_t read_ = 0;
  std::uint64_t resources_ = 0;  // address
  std::vector<Section> sections_;
};

}  // namespace

std::string PeFileVersion(Files& files, const std::string& path) {
  const auto stream = files.Open(path);
  if (!stream) return {};
  try {
    return Image(*stream.value()).Version();
  } catch (const Broken&) {
    return {};
  }
}

}  // namespace zendrix::platform
