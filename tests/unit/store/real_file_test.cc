#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/linux/linux_files.h"
#include "store/log_reader.h"
#include "store/reader.h"
#include "support/store_fixture.h"
#include "support/temporary_folder.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;

// The reader on real files, with other processes as the Agent.
class RealFileTest : public ::testing::Test {
 protected:
  RealFileTest() {
    path_ = folder_.Path("KorvessaMonitoring.kvl");
    log_.on_line = [this](const std::string& line) { logged_.push_back(line); };
  }
  ~RealFileTest() override { chmod(path_.c_str(), 0644); }

  static std::string Line(int date, const std::string& description) {
    return std::to_string(date) + ",HOST,7,System|0|1|" + description + "|r|c|\r\n";
  }
  // 64 bytes with a description of digits and dots. A line that does not cross a page reaches the file in one
  // piece; one that does may be seen cut in two, and the reader then takes its halves for two lines.
  static std::string AlignedLine(int number) { return Line(1'000'000 + number, Dotted(number)); }
  static std::string Dotted(int number) {
    std::string text = std::to_string(number);
    return text + std::string(64 - Line(1'000'000, text).size(), '.');
  }
  void Write(const std::string& bytes) { std::ofstream(path_, std::ios::binary) << bytes; }
  void Append(const std::string& bytes) { std::ofstream(path_, std::ios::binary | std::ios::app) << bytes; }
  std::vector<std::string> Descriptions() const {
    std::vector<std::string> texts;
    for (store::Bookmark row = 0; row < reader_.EventTable->RowCount(); ++row) {
      texts.emplace_back(reader_.EventTable->Text(row, store::kDescription));
    }
    return texts;
  }
  // Runs `act` in another process, which ends with it.
  static pid_t InAnotherProcess(const std::function<void()>& act) {
    const pid_t child = fork();
    if (child == 0) {
      act();
      _exit(0);
    }
    return child;
  }
  static void AwaitEnd(pid_t child) {
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
  }

  TemporaryFolder folder_;
  std::string path_;
  platform::LinuxFiles files_;
  platform::MemoryPlatform twins_;
  platform::Seams seams_{files_,        twins_.clock,         twins_.locale,       twins_.host,
                         twins_.shell,  twins_.instance_lock, twins_.services,     twins_.timers,
                         twins_.timers, twins_.message_boxes, twins_.file_dialogs, twins_.colour_dialogs,
                         twins_.family, twins_.process};
  core::AppState state_{seams_};
  core::ErrorLog log_{state_};
  std::vector<std::string> logged_;
  store::CMkvlf reader_{state_, log_};
};

TEST_F(RealFileTest, LoadsAndFollows) {
  Write(Line(1, "a") + Line(2, "b"));
  reader_.InitClass(path_);
  Append(Line(3, "c"));
  reader_.LoadNewEvents();
  EXPECT_THAT(Descriptions(), ElementsAre("a", "b", "c"));
}

TEST_F(RealFileTest, UnreadableFileIsTriedAgain) {
  if (geteuid() == 0) {
    // The superuser may read everything: a child that gives this up does the test, and says so by its end.
    chmod(folder_.path().c_str(), 0777);
    Write(Line(1, "a"));
    reader_.InitClass(path_);
    const pid_t child = InAnotherProcess([this] {
      Append(Line(2, "b"));
      chmod(path_.c_str(), 0);
      if (setuid(65534) != 0) _exit(2);
      reader_.LoadNewEvents();
      const bool refused =
          logged_.size() == 1 && logged_[0] == "'CMkvlf:LoadNewEvents (0).': 70: Permission denied";
      _exit(refused && Descriptions().size() == 1 && reader_.LastLineNumber == 1 ? 0 : 3);
    });
    AwaitEnd(child);
    chmod(path_.c_str(), 0644);
  } else {
    Write(Line(1, "a"));
    reader_.InitClass(path_);
    Append(Line(2, "b"));
    chmod(path_.c_str(), 0);
    reader_.LoadNewEvents();
    EXPECT_THAT(logged_, ElementsAre("'CMkvlf:LoadNewEvents (0).': 70: Permission denied"));
    chmod(path_.c_str(), 0644);
  }
  reader_.LoadNewEvents();
  EXPECT_THAT(Descriptions(), ElementsAre("a", "b"));
}

TEST_F(RealFileTest, VanishedShrunkAndReplacedFiles) {
  Write(Line(1, "a") + Line(2, "b"));
  reader_.InitClass(path_);
  std::filesystem::remove(path_);
  reader_.LoadNewEvents();
  EXPECT_THAT(Descriptions(), ElementsAre("a", "b"));
  Write(Line(3, "c"));
  reader_.LoadNewEvents();
  EXPECT_TRUE(reader_.ReloadedFlag);
  EXPECT_THAT(Descriptions(), ElementsAre("c"));
  std::filesystem::resize_file(path_, 0);
  reader_.LoadNewEvents();
  EXPECT_THAT(Descriptions(), ElementsAre());
  // A new file under the old name, put there by a rename.
  const std::string other = path_ + ".new";
  std::ofstream(other, std::ios::binary) << Line(4, "d") << Line(5, "e");
  std::filesystem::rename(other, path_);
  reader_.LoadNewEvents();
  EXPECT_THAT(Descriptions(), ElementsAre("d", "e"));
}

TEST_F(RealFileTest, FolderOrPipeUnderTheNameIsNoFile) {
  std::filesystem::create_directory(path_);
  reader_.InitClass(path_);
  EXPECT_EQ(reader_.ReaderFilePath, "");
  std::filesystem::remove(path_);
  ASSERT_EQ(mkfifo(path_.c_str(), 0644), 0);
  reader_.InitClass(path_);
  EXPECT_EQ(reader_.ReaderFilePath, "");
  EXPECT_TRUE(reader_.ReloadedFlag);
}

TEST_F(RealFileTest, EveryLineOfAWriterThatNeverRestsArrivesOnce) {
  constexpr int kLines = 3000;
  Write(AlignedLine(0));
  reader_.InitClass(path_);
  const pid_t writer = InAnotherProcess([this] {
    const int file = open(path_.c_str(), O_WRONLY | O_APPEND);
    for (int i = 1; i <= kLines; ++i) {
      const std::string line = AlignedLine(i);
      if (write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) _exit(1);
    }
  });
  int status = 0;
  while (waitpid(writer, &status, WNOHANG) == 0) reader_.LoadNewEvents();
  ASSERT_EQ(status, 0);
  reader_.LoadNewEvents();
  std::vector<std::string> expected;
  for (int i = 0; i <= kLines; ++i) expected.push_back(Dotted(i));
  EXPECT_EQ(Descriptions(), expected);
  EXPECT_EQ(reader_.LastLineNumber, kLines + 1);
}

TEST_F(RealFileTest, FileThatGrowsUnderAFullLoadIsReadWithoutLossOrDouble) {
  constexpr int kLines = 20000;
  std::string start;
  for (int i = 0; i < kLines; ++i) start += AlignedLine(i);
  Write(start);
  const pid_t writer = InAnotherProcess([this] {
    const int file = open(path_.c_str(), O_WRONLY | O_APPEND);
    for (int i = kLines; i < kLines + 2000; ++i) {
      const std::string line = AlignedLine(i);
      if (write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) _exit(1);
    }
  });
  reader_.InitClass(path_);
  AwaitEnd(writer);
  reader_.LoadNewEvents();
  std::vector<std::string> expected;
  for (int i = 0; i < kLines + 2000; ++i) expected.push_back(Dotted(i));
  EXPECT_EQ(Descriptions(), expected);
}

TEST_F(RealFileTest, LogOfARealFolder) {
  Write("1,h,t,a\r\n2,h,t,b\r\n");
  store::CLog log(state_);
  log.InitClass(path_);
  ASSERT_NE(log.table(), nullptr);
  EXPECT_EQ(log.table()->Text(0, 4), "b");
}

}  // namespace
}  // namespace zendrix::test
