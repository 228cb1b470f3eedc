// The pictures: every number, key and file name that the program asks for is staged, and the drawings are
// plain.
#include <cstdint>
#include <map>
#include <sstream>

#include "alerts/monitor_catalogue.h"
#include "unit/data/data_files.h"

namespace zendrix {
namespace {

using test::Contains;
using test::ReadBytes;
namespace fs = std::filesystem;

const fs::path kDrawings = fs::path(ZENDRIX_DATA) / "images" / "svg";
const fs::path kImages = fs::path(ZENDRIX_STAGED) / "Images";

std::string TwoDigits(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

// Path beside the executable to the drawing it is made from.
std::map<std::string, std::string> Table() {
  std::map<std::string, std::string> table;
  std::istringstream lines(ReadBytes(fs::path(ZENDRIX_DATA) / "images" / "pictures.txt"));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::string path, drawing;
    fields >> path >> drawing;
    EXPECT_TRUE(table.emplace(path, drawing).second) << path << " comes twice";
  }
  return table;
}

int BigEndian(const std::string& bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
  return static_cast<int>(value);
}

void ExpectPng(const std::string& name, int edge) {
  SCOPED_TRACE(name);
  const std::string bytes = ReadBytes(kImages / name);
  ASSERT_GE(bytes.size(), 24u);
  EXPECT_EQ(bytes.substr(1, 3), "PNG");
  EXPECT_EQ(BigEndian(bytes, 16), edge);
  EXPECT_EQ(BigEndian(bytes, 20), edge);
}

void ExpectSvg(const std::string& path) {
  const std::string bytes = ReadBytes(kImages / path);
  EXPECT_TRUE(bytes.starts_with("<svg ")) << path;
}

TEST(Pictures, OfTheAlertPagesHaveTheirSizes) {
  for (const char* name :
       {"bug_red", "undo", "redo", "workplace", "server_client_exchange", "data_refresh", "businessman",
        "id_card", "folder_closed", "server_connection", "window_gear", "cubes", "server_client"}) {
    ExpectPng(std::string(name) + ".png", 16);
  }
  for (const char* name :
       {"security_agent", "bug_red", "server_client", "warning", "window_gear", "server_client_exchange",
        "businessman", "data_refresh", "server_connection", "cubes", "id_card", "folder_closed"}) {
    ExpectPng(std::string(name) + "_48.png", 48);
  }
}

TEST(Pictures, OfTheListsAreThereByNumber) {
  for (int number = 1; number <= alerts::kImgListH3Count; ++number)
    ExpectSvg("h3/" + TwoDigits(number) + ".svg");
  for (int number = 1; number <= alerts::kGridPictureCount; ++number)
    ExpectSvg("grid/" + TwoDigits(number) + ".svg");
}

TEST(Pictures, OfTheListsShowWhatTheirTagsSay) {
  const auto table = Table();
  for (int number = 1; number <= alerts::kImgListH3Count; ++number) {
    const std::string_view tag = alerts::PictureTag(number);
    if (tag.empty()) continue;
    EXPECT_EQ(table.at("h3/" + TwoDigits(number) + ".svg"), tag) << number;
  }
}

TEST(Pictures, OfAMonitorAreTheSameInListsAndGrid) {
  const auto table = Table();
  for (const std::string_view monitor : alerts::MonitorNames()) {
    const int in_grid = alerts::GridPicture(3, monitor);
    const int in_lists = alerts::AdminPicture(monitor);
    EXPECT_EQ(table.at("grid/" + TwoDigits(in_grid) + ".svg"), table.at("h3/" + TwoDigits(in_lists) + ".svg"))
        << monitor;
  }
}

TEST(Pictures, OfTheKeyedListsAndBarsAreThere) {
  for (const char* key : {"Check", "FlagG0", "FlagR0", "FlagY0", "warning", "error", "info", "FlagG", "FlagY",
                          "FlagR", "ecount0", "ecount1"}) {
    ExpectSvg("lst32/" + std::string(key) + ".svg");
  }
  for (const char* key :
       {"Open", "Save", "Copy", "Paste", "Find", "Chart", "VLogs", "Refresh", "Options", "Filter", "Disable",
        "Play", "Stp", "Prev", "Back", "Step", "Nxt", "Notable", "Playing"}) {
    ExpectSvg("toolbar/" + std::string(key) + ".svg");
  }
  for (const char* index : {"0", "2", "3", "4", "5", "6", "arrow"})
    ExpectSvg("nav/" + std::string(index) + ".svg");
  for (const char* name : {"up", "down", "icon", "tray", "tray-notable"})
    ExpectSvg(std::string(name) + ".svg");
}

TEST(Pictures, OfTheApplicationHaveTheirSizes) {
  for (const int edge : {16, 22, 24, 32, 48, 64, 128, 256}) {
    ExpectPng("app/zendrix-" + std::to_string(edge) + ".png", edge);
  }
}

TEST(Drawings, AreAllUsedAndAllThere) {
  std::map<std::string, int> uses;
  for (const auto& entry : fs::directory_iterator(kDrawings)) uses[entry.path().stem().string()] = 0;
  for (const auto& [path, drawing] : Table()) {
    const auto found = uses.find(drawing);
    ASSERT_NE(found, uses.end()) << drawing << " for " << path;
    ++found->second;
  }
  for (const auto& [drawing, count] : uses) EXPECT_GT(count, 0) << drawing;
}

// Signals that mean different things must not be told apart by colour alone.
TEST(Drawings, OfDifferentSignalsDifferInMoreThanColour) {
  const auto without_colours = [](const std::string& name) {
    std::string text = ReadBytes(kDrawings / (name + ".svg"));
    text = text.substr(text.find("</title>"));
    for (std::size_t at = text.find("=\"#"); at != std::string::npos; at = text.find("=\"#", at + 1)) {
      text.erase(at + 3, 6);
    }
    return text;
  };
  for (const auto& group :
       std::vector<std::vector<std::string>>{{"flag_g", "flag_y", "flag_r"},
                                             {"flag_g0", "flag_y0", "flag_r0"},
                                             {"bug_green", "bug_yellow", "bug_red"},
                                             {"normal", "suspicious", "intrusion", "error", "allowed"},
                                             {"undo", "redo"},
                                             {"tray", "tray_notable"},
                                             {"change_added", "change_removed", "change_notable"}}) {
    for (std::size_t i = 0; i < group.size(); ++i) {
      for (std::size_t k = 0; k < i; ++k) {
        EXPECT_NE(without_colours(group[i]), without_colours(group[k])) << group[i] << " " << group[k];
      }
    }
  }
}

TEST(Drawings, AreSmallAndReferToNothing) {
  for (const auto& entry : fs::directory_iterator(kDrawings)) {
    SCOPED_TRACE(entry.path().filename().string());
    const std::string text = ReadBytes(entry.path());
    EXPECT_EQ(entry.path().extension(), ".svg");
    EXPECT_LT(text.size(), 4096u);
    EXPECT_TRUE(text.starts_with("<svg xmlns=\"http://www.w3.org/2000/svg\" "));
    EXPECT_TRUE(text.ends_with("</svg>\n"));
    for (const char* word :
         {"script", "href", "url(", "<style", "<image", "<text", "<foreignObject", "<!", "<?", "&", " on"}) {
      EXPECT_FALSE(Contains(text, word)) << word;
    }
  }
}

}  // namespace
}  // namespace zendrix
