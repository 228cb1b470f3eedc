#include "support/store_fixture.h"

#include <utility>

namespace zendrix::test {

StoreFixture::StoreFixture() : seams_(platform_.seams()), state_(seams_), log_(state_) {
  state_.ProgramFolder = "/app";
  state_.MonitoringFilePath = kPath;
  log_.on_line = [this](const std::string& line) { logged_.push_back(line); };
  reader_ =
      std::make_unique<store::CMkvlf>(state_, log_, [this](int percent) { progress_.push_back(percent); });
  reader_->newAlert.ConnectForever([this] { ++alerts_; });
}

StoreFixture::~StoreFixture() {
  for (const std::string& line : logged_) ADD_FAILURE() << "unannounced log line: " << line;
}

void StoreFixture::AppendLines(const std::vector<std::string>& lines) {
  for (const std::string& line : lines) AppendLine(line);
}

void StoreFixture::ReplaceFile(const std::vector<std::string>& lines) {
  std::string bytes;
  for (const std::string& line : lines) bytes += line + "\r\n";
  platform_.files.Put(kPath, bytes);
}

void StoreFixture::Load() {
  reader_->InitClass(kPath);
}

void StoreFixture::ExpectFatal(const std::function<void()>& act, const std::string& procedure, int number) {
  std::string seen_procedure;
  int seen_number = 0;
  log_.on_fatal = [&](const std::string& proc, const core::RunTimeError& error) {
    seen_procedure = proc;
    seen_number = error.number;
  };
  EXPECT_THROW(act(), platform::ProcessEnded);
  log_.on_fatal = nullptr;
  EXPECT_EQ(seen_procedure, procedure);
  EXPECT_EQ(seen_number, number);
  ASSERT_FALSE(platform_.message_boxes.shown.empty());
  EXPECT_EQ(platform_.message_boxes.shown.back().text, "Unexpected Error. Zendrix is exiting.");
  ExpectLog("An error has occurred in procedure '" + procedure + "'. Error " + std::to_string(number) + ": " +
            core::DescriptionOf(number));
}

void StoreFixture::ExpectLog(const std::string& message) {
  ASSERT_FALSE(logged_.empty()) << "no log line: " << message;
  EXPECT_EQ(logged_.front(), message);
  logged_.erase(logged_.begin());
}

std::vector<std::int32_t> StoreFixture::IDs() const {
  std::vector<std::int32_t> ids;
  for (store::Bookmark row = 0; row < Rows(); ++row) ids.push_back(ID(row));
  return ids;
}

std::vector<std::string> StoreFixture::Column(int column) const {
  std::vector<std::string> texts;
  for (store::Bookmark row = 0; row < Rows(); ++row) texts.push_back(Text(row, column));
  return texts;
}

std::vector<std::string> StoreFixture::ColumnNames() const {
  std::vector<std::string> names;
  for (int i = 0; i < reader_->EventTable->ColumnCount(); ++i)
    names.push_back(reader_->EventTable->ColumnName(i));
  return names;
}

std::vector<std::string> StoreFixture::Dump() const {
  std::vector<std::string> rows;
  for (store::Bookmark row = 0; row < Rows(); ++row) {
    std::string text = std::to_string(ID(row));
    for (int column = store::kDateUTC; column < reader_->EventTable->ColumnCount(); ++column) {
      if (column != store::kDateTime) text += "|" + Text(row, column);
    }
    rows.push_back(std::move(text));
  }
  return rows;
}

std::vector<std::string> StoreFixture::Items(const store::CUList& list) {
  std::vector<std::string> items;
  for (const auto& entry : list.ColList()) items.push_back(entry.item);
  return items;
}

std::vector<std::string> StoreFixture::Keys(const store::CUList& list) {
  std::vector<std::string> keys;
  for (const auto& entry : list.ColList()) keys.push_back(entry.key);
  return keys;
}

std::string StoreFixture::Line(std::string_view date, std::string_view monitor, std::string_view description,
                               std::string_view change) {
  std::string line(date);
  line += ",HOST,7,";
  line += monitor;
  line += "|0|";
  line += change;
  line += "|";
  line += description;
  line += "|started|ok,1|";
  return line;
}

}  // namespace zendrix::test
