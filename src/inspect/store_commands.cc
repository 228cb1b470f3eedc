// events, follow, log, desc, hash.
#include <sys/signalfd.h>

#include <csignal>
#include <iostream>

#include "core/desc_lookup.h"
#include "core/hash_utils.h"
#include "inspect/commands.h"
#include "inspect/console.h"
#include "platform/windows_1252.h"
#include "store/descriptions.h"
#include "store/log_reader.h"
#include "store/reader.h"

namespace zendrix::inspect {
namespace {

constexpr char kMonitoringFile[] = "KorvessaMonitoring.kvl";

Json ListOf(const store::CUList& list) {
  Json entries = Json::array();
  for (const auto& entry : list.ColList())
    entries.push_back({{"key", Text(entry.key)}, {"item", Text(entry.item)}});
  return entries;
}

Json ReaderOf(const store::CMkvlf& reader) {
  return {{"LastLineNumber", reader.LastLineNumber},
          {"LastFileSize", reader.LastFileSize},
          {"LastDateUTC", Text(reader.LastDateUTC)},
          {"ReloadedFlag", reader.ReloadedFlag},
          {"ReaderFilePath", Path(reader.ReaderFilePath)}};
}

Json ColumnsOf(const store::CMkvlf& reader) {
  Json columns = Json::array();
  if (!reader.EventTable) return columns;
  for (int column = 0; column < reader.EventTable->ColumnCount(); ++column)
    columns.push_back(Text(reader.EventTable->ColumnName(column)));
  return columns;
}

Json RowOf(const store::EventTable& table, store::Bookmark row) {
  Json cells = Json::array();
  cells.push_back(table.ID(row));
  for (int column = store::kDateUTC; column < table.ColumnCount(); ++column)
    cells.push_back(Text(table.Text(row, column)));
  return cells;
}

// Rows from `first` (counted from 0) to the end.
Json RowsFrom(const store::CMkvlf& reader, store::Bookmark first) {
  Json rows = Json::array();
  if (!reader.EventTable) return rows;
  for (store::Bookmark row = first; row < reader.EventTable->RowCount(); ++row)
    rows.push_back(RowOf(*reader.EventTable, row));
  return rows;
}

Json RowOf(const store::EventLogTable& table, std::size_t row) {
  Json cells = Json::array();
  cells.push_back(table.ID(row));
  for (std::size_t column = 1; column < table.ColumnCount(); ++column)
    cells.push_back(Text(table.Text(row, column)));
  return cells;
}

// Lets an interrupt end the loop instead of the process.
class EndOnInterrupt {
 public:
  explicit EndOnInterrupt(platform::PollLoop& loop) : loop_(loop) {
    sigset_t wanted;
    sigemptyset(&wanted);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&wanted, signal);
    sigprocmask(SIG_BLOCK, &wanted, nullptr);
    signals_ = platform::FileDescriptor(signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK));
    loop_.WatchReadable(signals_.get(), [this] { loop_.Quit(); });
  }
  EndOnInterrupt(const EndOnInterrupt&) = delete;
  EndOnInterrupt& operator=(const EndOnInterrupt&) = delete;
  ~EndOnInterrupt() { loop_.StopWatching(signals_.get()); }

 private:
  platform::PollLoop& loop_;
  platform::FileDescriptor signals_;
};

class FollowedFile {
 public:
  explicit FollowedFile(Console& console) : console_(console), reader_(console_.state(), console_.log()) {
    reader_.newAlert.ConnectForever([this] { alerted_ = true; });
  }

  void Load() {
    reader_.InitClass(platform::JoinPath(console_.state().ProgramFolder, kMonitoringFile));
    PrintTick(true);
  }

  void Tick() {
    reader_.LoadNewEvents();
    PrintTick(alerted_);
  }

  // The reader's own timer makes the ticks.
  void RunLive() {
    console_.OnTick([this] { PrintTick(alerted_); });
    console_.loop().Run();
  }

 private:
  void PrintTick(bool changed) {
    Json document;
    document["tick"] = tick_;
    document["newAlert"] = alerted_;
    document["ReloadedFlag"] = reader_.ReloadedFlag;
    document["rows"] = reader_.EventTable ? reader_.EventTable->RowCount() : 0;
    document["LastBookmark"] = reader_.LastBookmark ? Json(*reader_.LastBookmark + 1) : Json(nullptr);
    const bool all = reader_.ReloadedFlag || !reader_.LastBookmark;
    document["added"] = changed ? RowsFrom(reader_, all ? 0 : *reader_.LastBookmark + 1) : Json::array();
    document["MonitorList"] = ListOf(reader_.MonitorList);
    document["reader"] = ReaderOf(reader_);
    console_.Print(std::move(document));
    ++tick_;
    alerted_ = false;
  }

  Console& console_;
  store::CMkvlf reader_;
  bool alerted_ = false;
  int tick_ = 0;
};

}  // namespace

void Events(Console& console, const Words& words) {
  RequireWords(words, 0, 0, "events");
  Json progress = Json::array();
  store::CMkvlf reader(console.state(), console.log(), [&](int percent) { progress.push_back(percent); });
  reader.InitClass(platform::JoinPath(console.state().ProgramFolder, kMonitoringFile));
  const auto table = reader.EventTable;
  console.PrintWithRows({{"columns", ColumnsOf(reader)},
                         {"rows", nullptr},  // their place in the document
                         {"reader", ReaderOf(reader)},
                         {"MonitorList", ListOf(reader.MonitorList)},
                         {"HostList", ListOf(reader.HostList)},
                         {"OriginalList", ListOf(reader.OriginalList)},
                         {"progress", std::move(progress)}},
                        table ? table->RowCount() : 0,
                        [&](std::size_t row) { return RowOf(*table, static_cast<store::Bookmark>(row)); });
}

void Follow(Console& console, const Words& words) {
  RequireWords(words, 0, 1, "follow [--live]");
  const bool live = !words.empty();
  if (live && words[0] != "--live") throw WrongUsage("follow takes only --live");
  FollowedFile file(console);
  if (live) {
    EndOnInterrupt interrupt(console.loop());
    file.Load();
    return file.RunLive();
  }
  file.Load();
  for (std::string line; std::getline(std::cin, line);) file.Tick();
}

void Log(Console& console, const Words& words) {
  RequireWords(words, 1, 1, "log FILE");
  store::CLog log(console.state());
  log.InitClass(console.ResolveFile(words[0]));
  const auto table = log.table();
  if (!table) return console.Print({{"table", nullptr}});
  Json columns = Json::array();
  for (std::size_t column = 0; column < table->ColumnCount(); ++column)
    columns.push_back(Text(table->ColumnName(column)));
  console.PrintWithRows({{"columns", std::move(columns)}}, table->RowCount(),
                        [&](std::size_t row) { return RowOf(*table, row); });
}

void Desc(Console& console, const Words& words) {
  RequireWords(words, 2, 2, "desc N KEY");
  const bool digits = !words[0].empty() && words[0].find_first_not_of("0123456789") == std::string::npos;
  if (!digits || words[0].size() > 2 || std::stoi(words[0]) > 10)
    throw WrongUsage("desc: N is a number from 0 to 10");
  store::LoadDescArrays(console.state(), console.log());
  std::string text;
  const auto& lines = console.state().Desc[static_cast<std::size_t>(std::stoi(words[0]))];
  const bool found = core::DescLookup(lines, platform::BytesFromUtf8(words[1]), text);
  console.Print({{"text", found ? Text(text) : Json(nullptr)}});
}

void Hash(Console& console, const Words& words) {
  RequireWords(words, 1, 2, "hash FILE [store]");
  if (words.size() == 2 && words[1] != "store") throw WrongUsage("hash: the second word can only be 'store'");
  const std::string path = console.ResolveFile(words[0]);
  auto& seams = console.state().seams;
  core::HashUtils hashes(seams.files, seams.family);
  if (!seams.files.Exists(path)) throw NoSuchThing("File " + words[0] + " not found.");
  if (words.size() == 2) hashes.StoreFileHash(path);
  const bool verified = hashes.VerifyFileHash(path);
  console.Print({{"hash", hashes.ComputeFileHash(path)},
                 {"stored", Text(hashes.ReadStoredHash(core::SideFilePath(path)))},
                 {"verified", verified}});
}

}  // namespace zendrix::inspect
