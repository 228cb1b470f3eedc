#include "grid_operations.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "admin/frm_main.h"
#include "bench_platform.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "settings/reg_ini.h"
#include "temporary_folder.h"
#include "widgets/screen.h"

namespace zendrix::bench {
namespace {

constexpr char kName[] = "/KorvessaMonitoring.kvl";

// A font whose characters are all of one width.
admin::TextMetrics PlainMetrics() {
  admin::TextMetrics metrics;
  metrics.twips = [](std::string_view text) { return static_cast<int>(text.size()) * 105; };
  metrics.pixels = [](std::string_view text) { return static_cast<int>(text.size()) * 7; };
  return metrics;
}

// The Administrator console on a file, in a folder of its own that settings and log go to.
struct Administrator {
  enum class As { kItself, kCopy };
  Administrator(const std::string& file, As as) : seams(platform.seams()), state(seams), log(state) {
    if (as == As::kCopy) {
      std::filesystem::copy_file(file, path());
    } else {
      std::filesystem::create_symlink(std::filesystem::absolute(file), path());
    }
    state.ProgramFolder = folder.path();
  }
  std::string path() const { return folder.path() + kName; }
  void Load() {
    form = std::make_unique<admin::frmMain>(admin::AdminParts{state, log, reg_ini, screen, PlainMetrics()});
    form->Form_Load();
    form->visible = true;
  }
  std::uint64_t Rows() const { return static_cast<std::uint64_t>(form->EventList.DataRows()); }

  TemporaryFolder folder;
  BenchPlatform platform;
  platform::Seams seams;
  core::AppState state;
  core::ErrorLog log;
  settings::RegIni reg_ini{state, log};
  widgets::Screen screen;
  std::unique_ptr<admin::frmMain> form;
};

std::string NewerLines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    text += std::to_string(2'000'000'000 + i) +
            ",WORKSTATION-07,Running Processes,A,C:\\Program Files\\New " + std::to_string(i) +
            "\\new.exe\r\n";
  }
  return text;
}

int Number(const std::vector<std::string>& arguments, std::size_t at, int otherwise) {
  return at < arguments.size() ? std::atoi(arguments[at].c_str()) : otherwise;
}

}  // namespace

Operation LoadAdmin(const std::string& file, const std::vector<std::string>&) {
  const auto console = std::make_shared<Administrator>(file, Administrator::As::kItself);
  return {{}, [console] {
            console->Load();
            return console->Rows();
          }};
}

Operation TickAdmin(const std::string& file, const std::vector<std::string>& arguments) {
  const int lines = Number(arguments, 0, 100);
  const int column = Number(arguments, 1, 0);
  const auto console = std::make_shared<Administrator>(file, Administrator::As::kCopy);
  return {[console, lines, column] {
            console->Load();
            console->form->Timer1_Timer();  // the first takes the file's size as it is
            if (column > 0) console->form->EventList_HeaderClick(column);
            std::ofstream(console->path(), std::ios::app | std::ios::binary) << NewerLines(lines);
          },
          [console, lines] {
            const std::uint64_t before = console->Rows();
            console->form->Timer1_Timer();
            const std::uint64_t added = console->Rows() - before;
            if (added != static_cast<std::uint64_t>(lines)) throw std::runtime_error("lines are missing");
            return added;
          }};
}

Operation FillTimeline(const std::string& file, const std::vector<std::string>& arguments) {
  const auto console = std::make_shared<Administrator>(file, Administrator::As::kItself);
  const std::vector<core::KeyValue> values = {{"Nslots", std::to_string(Number(arguments, 0, 30))},
                                              {"TSlots", std::to_string(Number(arguments, 1, 1))},
                                              {"TCHart", arguments.size() > 2 ? arguments[2] : "D"}};
  return {[console, values] {
            console->Load();
            console->reg_ini.SaveSection("Tline", values);
            console->reg_ini.ReadRegInfo();
          },
          [console] {
            console->form->timeline.FillMiniChart();
            console->form->timeline.DrawMiniChart();
            return console->Rows();
          }};
}

Operation SortAdmin(const std::string& file, const std::vector<std::string>& arguments) {
  const int column = Number(arguments, 0, admin::kColDescription);
  const auto console = std::make_shared<Administrator>(file, Administrator::As::kItself);
  return {[console] { console->Load(); },
          [console, column] {
            console->form->EventList_HeaderClick(column);
            return console->Rows();
          }};
}

Operation FilterAdmin(const std::string& file, const std::vector<std::string>& arguments) {
  if (arguments.empty()) throw std::runtime_error("no pattern was given");
  const auto console = std::make_shared<Administrator>(file, Administrator::As::kItself);
  return {[console, pattern = arguments[0]] {
            console->Load();
            console->form->filter.MnTQuery_Click();
            console->form->filter.OpenDialog()->Desc.Edit(pattern);
          },
          [console] {
            console->form->filter.OpenDialog()->Apply_Click();
            return console->Rows();
          }};
}

Operation FindAdmin(const std::string& file, const std::vector<std::string>& arguments) {
  if (arguments.empty()) throw std::runtime_error("no text was given");
  const auto console = std::make_shared<Administrator>(file, Administrator::As::kItself);
  return {[console, text = arguments[0]] {
            console->Load();
            console->form->find.MnEFind_Click();
            console->form->find.Dialog()->txtFind.Edit(text);
          },
          [console] {
            console->form->find.MnEFindN_Click();
            return console->Rows();
          }};
}

Operation StateAdmin(const std::string& file, const std::vector<std::string>& arguments) {
  const int wanted = Number(arguments, 0, 0);
  const auto console = std::make_shared<Administrator>(file, Administrator::As::kItself);
  return {[console] { console->Load(); },
          [console, wanted] {
            const int row = wanted > 0 ? wanted : (console->form->EventList.DataRows() + 1) / 2;
            console->form->replay.tvVCR1(row);
            std::uint64_t items = 0;
            for (const widgets::Tree::Branch& branch : console->form->replay.tvVCR.branches())
              items += branch.items.count;
            return items;
          }};
}

}  // namespace zendrix::bench
