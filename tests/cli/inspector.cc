#include "cli/inspector.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

template class nlohmann::basic_json<nlohmann::ordered_map>;

namespace zendrix::test {
namespace {

constexpr int kPatienceMs = 60000;

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (auto& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// The caller's environment without what says how texts, dates and times look.
std::vector<std::string> EnvironmentWith(const Environment& wanted) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable; ++variable) {
    const std::string text = *variable;
    const std::string name = text.substr(0, text.find('='));
    const bool regional =
        name.starts_with("LC_") || name == "LANG" || name == "LANGUAGE" || name == "TZ" || name == "LOCPATH";
    if (!regional && !wanted.contains(name)) variables.push_back(text);
  }
  for (const auto& [name, value] : wanted) variables.push_back(name + "=" + value);
  return variables;
}

struct Ends {
  int input, output, error;
};

pid_t Spawn(const std::string& program, const Arguments& arguments, const Environment& environment,
            const Ends& ends, const std::string& working_folder) {
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> variables = EnvironmentWith(environment);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends.input, 0);
  posix_spawn_file_actions_adddup2(&actions, ends.output, 1);
  posix_spawn_file_actions_adddup2(&actions, ends.error, 2);
  posix_spawn_file_actions_addchdir_np(&actions, working_folder.c_str());
  pid_t pid = -1;
  const int failed = posix_spawn(&pid, program.c_str(), &actions, nullptr, Pointers(words).data(),
                                 Pointers(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  EXPECT_EQ(failed, 0) << "cannot start " << program << ": " << std::strerror(failed);
  return failed == 0 ? pid : -1;
}

int StatusOf(pid_t pid) {
  int status = 0;
  if (pid < 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

// A file in memory that lives as long as its descriptor.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& bytes = "") : fd_(memfd_create("end", MFD_CLOEXEC)) {
    EXPECT_EQ(write(fd_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    lseek(fd_, 0, SEEK_SET);
  }
  ~MemoryFile() { close(fd_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  int fd() const { return fd_; }
  std::string Text() const {
    std::string text;
    char piece[65536];
    lseek(fd_, 0, SEEK_SET);
    for (ssize_t got; (got = read(fd_, piece, sizeof piece)) > 0;)
      text.append(piece, static_cast<std::size_t>(got));
    return text;
  }

 private:
  int fd_;
};

}  // namespace

const std::string& InspectorPath() {
  static const std::string path = [] {
    const char* const given = std::getenv("ZENDRIX_TEST_INSPECTOR");
    return std::string(given ? given : ZENDRIX_INSPECT);
  }();
  return path;
}

Json Ended::document() const {
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 1) << out;
  EXPECT_TRUE(out.ends_with('\n')) << out;
  Json parsed = Json::parse(out, nullptr, false);
  EXPECT_TRUE(parsed.is_object()) << out;
  return parsed;
}

Running::Running(const Arguments& arguments, const Environment& environment) {
  int to[2] = {-1, -1}, from[2] = {-1, -1};
  EXPECT_EQ(pipe2(to, O_CLOEXEC), 0);
  EXPECT_EQ(pipe2(from, O_CLOEXEC), 0);
  pid_ = Spawn(InspectorPath(), arguments, environment, {to[0], from[1], 2}, "/");
  close(to[0]);
  close(from[1]);
  input_ = to[1];
  output_ = from[0];
}

Running::~Running() {
  if (pid_ >= 0) {
    kill(pid_, SIGKILL);
    StatusOf(pid_);
  }
  EndInput();
  close(output_);
}

void Running::Line(const std::string& text) {
  const std::string line = text + "\n";
  ASSERT_EQ(write(input_, line.data(), line.size()), static_cast<ssize_t>(line.size()));
}

void Running::EndInput() {
  if (input_ >= 0) close(input_);
  input_ = -1;
}

bool Running::ReadMore(int timeout_ms) {
  pollfd waiting{output_, POLLIN, 0};
  if (poll(&waiting, 1, timeout_ms) <= 0) return false;
  char piece[65536];
  const ssize_t got = read(output_, piece, sizeof piece);
  if (got <= 0) return false;
  read_.append(piece, static_cast<std::size_t>(got));
  return true;
}

Json Running::Document() {
  while (read_.find('\n') == std::string::npos) {
    if (ReadMore(kPatienceMs)) continue;
    ADD_FAILURE() << "no further document; what there is: " << read_;
    return nullptr;
  }
  const std::size_t end = read_.find('\n');
  Json parsed = Json::parse(read_.substr(0, end), nullptr, false);
  EXPECT_TRUE(parsed.is_object()) << read_;
  read_.erase(0, end + 1);
  return parsed;
}

bool Running::Silent() {
  ReadMore(0);
  return read_.empty();
}

void Running::Signal(int number) {
  ASSERT_EQ(kill(pid_, number), 0);
}

int Running::Wait() {
  const int status = StatusOf(pid_);
  pid_ = -1;
  return status;
}

std::map<std::string, std::string> Listing(const std::string& folder) {
  std::map<std::string, std::string> listing;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    struct stat about {};
    lstat(entry.path().c_str(), &about);
    std::string text = std::to_string(about.st_mode) + " " + std::to_string(about.st_ino) + " " +
                       std::to_string(about.st_mtim.tv_sec) + "." + std::to_string(about.st_mtim.tv_nsec) +
                       " ";
    if (entry.is_regular_file()) {
      std::ifstream file(entry.path(), std::ios::binary);
      text.append(std::istreambuf_iterator<char>(file), {});
    }
    listing[std::filesystem::relative(entry.path(), folder)] = text;
  }
  return listing;
}

std::vector<std::string> FilesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> KeysOf(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& item : object.items()) keys.push_back(item.key());
  return keys;
}

std::vector<std::string> BoxTexts(const Json& document) {
  std::vector<std::string> texts;
  for (const auto& box : document.at("messages")) texts.push_back(box.at("text"));
  return texts;
}

std::vector<std::string> LogLines(const Json& document) {
  return document.at("log").get<std::vector<std::string>>();
}

InspectorTest::InspectorTest() : program_(InspectorPath()) {}

void InspectorTest::RunFrom(const std::filesystem::path& folder) {
  const auto name = std::filesystem::path(InspectorPath()).filename();
  std::filesystem::copy_file(InspectorPath(), folder / name);
  program_ = folder / name;
}

Ended InspectorTest::RunPlain(const Arguments& arguments, const std::string& input,
                              const std::string& working_folder) {
  const MemoryFile in(input), out, err;
  const pid_t pid = Spawn(program_, arguments, environment_, {in.fd(), out.fd(), err.fd()}, working_folder);
  Ended ended;
  ended.status = StatusOf(pid);
  ended.out = out.Text();
  ended.err = err.Text();
  return ended;
}

Arguments InspectorTest::OnFolder(const Arguments& arguments) const {
  Arguments all{"--folder", folder_.path()};
  if (std::find(arguments.begin(), arguments.end(), "--agent") == arguments.end())
    all.insert(all.end(), {"--agent", "missing"});
  all.insert(all.end(), arguments.begin(), arguments.end());
  return all;
}

Ended InspectorTest::Run(const Arguments& arguments, const std::string& input) {
  return RunPlain(OnFolder(arguments), input);
}

Json InspectorTest::DocumentOf(int status, const Arguments& arguments) {
  const Ended ended = Run(arguments);
  EXPECT_EQ(ended.status, status) << ended.out << ended.err;
  EXPECT_EQ(ended.err, "");
  return ended.document();
}

Json InspectorTest::Document(const Arguments& arguments) {
  return DocumentOf(0, arguments);
}

Json InspectorTest::DocumentWriting(const Arguments& arguments) {
  Arguments all{"--write"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return Document(all);
}

std::string InspectorTest::Event(int second, const std::string& monitor, const std::string& description,
                                 const std::string& change, const std::string& reaction,
                                 const std::string& code) {
  return std::to_string(kStart + second) + ",HOST,7," + monitor + "|" + change + "|" + change + "|" +
         description + "|" + reaction + "|" + code + "|0\r\n";
}

void InspectorTest::Append(const std::string& name, const std::string& bytes) {
  std::ofstream(folder_.Path(name), std::ios::binary | std::ios::app) << bytes;
}

void InspectorTest::WriteHashed(const std::string& name, const std::string& bytes) {
  folder_.Write(name, bytes);
  EXPECT_EQ(DocumentWriting({"hash", folder_.Path(name), "store"}).at("verified"), true);
}

void InspectorTest::WriteAlertHistory() {
  WriteHistory(Event(0, "Aggregation", "Listening Ports=80:c:\\w\\web.exe;Memory Utilization=10:high", "0.99",
                     "", "AG,5,1") +
               Event(1, "Memory Utilization", "10:high") + Event(2, "Listening Ports", "80:c:\\w\\web.exe") +
               Event(3, "Memory Utilization", "10:high") + Event(4, "System Users", "J\x80rg") +
               Event(5, "Aggregation",
                     "Memory Utilization=10:high;Listening Ports=80:c:\\w\\web.exe;System Users=J\x80rg",
                     "0.99", "", "AG,9,2") +
               Event(9, "Community", "observed", "0", "Memory Utilization=success;Listening Ports=Failed"));
}

void InspectorTest::WriteDescriptions() {
  WriteHashed("KorvessaDesc2.kvl",
              "Aggregation,N,On <date> at <time>.<br> a <risklevel> alert:<Corrected><NotCorrected>"
              "<A HREF='undo'><undotext></A><A HREF='do'><dotext></A>\r\n"
              "Memory Utilization,1,Memory rose to <description><: by <%1><%2>:>\r\n"
              "Listening Ports,1,<description, right of :> listens on <description, left of :>\r\n"
              "System Users,1,New user <description>\r\n");
  WriteHashed("KorvessaDesc5.kvl", "System Users,User &lt;description&gt; at &lt;time of alert&gt;\r\n");
  WriteHashed("KorvessaDesc10.kvl", "Central,http://central.test/x.asp\r\n");
}

}  // namespace zendrix::test
