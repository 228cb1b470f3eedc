#include "support/hostile_corpus.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace zendrix::test {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(const std::string& name, const std::string& line) {
  throw std::runtime_error(name + " is not written as it should be: " + line);
}

int DigitOf(char digit) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto found = kDigits.find(digit);
  return found == std::string_view::npos ? -1 : static_cast<int>(found);
}

std::string Unescape(const std::string& name, const std::string& line) {
  std::string bytes;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] < ' ' || line[i] > '~') Refuse(name, line);
    if (line[i] != '\\') {
      bytes += line[i];
    } else if (line.compare(i, 2, "\\\\") == 0) {
      bytes += '\\';
      ++i;
    } else {
      const bool whole = line.compare(i, 2, "\\x") == 0 && i + 3 < line.size();
      const int high = whole ? DigitOf(line[i + 2]) : -1, low = whole ? DigitOf(line[i + 3]) : -1;
      if (high < 0 || low < 0) Refuse(name, line);
      bytes += static_cast<char>(high * 16 + low);
      i += 3;
    }
  }
  if (bytes.empty()) Refuse(name, line);
  return bytes;
}

// Letters that stand in no template's way: capitals first, then the accented ones of the code page.
std::string Letters() {
  std::string letters = "QZXJKWVY";
  for (int code = 0xC0; code <= 0xFF; ++code)
    if (code != 0xD7 && code != 0xF7) letters += static_cast<char>(code);
  for (char letter = 'A'; letter <= 'P'; ++letter) letters += letter;
  return letters;
}

}  // namespace

std::vector<HostileText> HostileCorpus(const std::string& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".txt") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  std::vector<HostileText> texts;
  for (const fs::path& path : files) {
    std::ifstream file(path, std::ios::binary);
    int number = 0;
    for (std::string line; std::getline(file, line);) {
      const std::string name = path.stem().string() + ":" + std::to_string(++number);
      texts.push_back({name, Unescape(name, line)});
    }
  }
  if (texts.empty()) throw std::runtime_error("no hostile texts in " + folder);
  return texts;
}

std::vector<HostileText> ShareOf(const std::vector<HostileText>& texts, std::size_t share,
                                 std::size_t shares) {
  std::vector<HostileText> taken;
  for (std::size_t i = share; i < texts.size(); i += shares) taken.push_back(texts[i]);
  return taken;
}

std::string Harmless::Of(std::string_view text) {
  static const std::string kLetters = Letters();
  static constexpr std::string_view kKept = " :;=\\.,";
  std::string harmless;
  for (const char character : text) {
    if (kKept.find(character) != std::string_view::npos) {
      harmless += character;
      continue;
    }
    std::size_t at = from_.find(character);
    if (at == std::string::npos) {
      at = from_.size();
      from_ += character;
      to_ += kLetters.at(at);
    }
    harmless += to_[at];
  }
  return harmless;
}

}  // namespace zendrix::test
