#include "desktop/admin_console.h"

#include <fstream>
#include <stdexcept>

#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

constexpr char kMonitoring[] = "KorvessaMonitoring.kvl";
constexpr long long kZero = 1'795'225'500;

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += "[" + text + "]";
  return joined;
}

}  // namespace

// The event that keeps the settings' hash up to date stays.
AdminConsole::AdminConsole() {
  const std::string first = folder().Read(kMonitoring);
  folder().Write(kMonitoring, std::to_string(kZero) + first.substr(first.find(',')));
}

void AdminConsole::Add(int second, const std::string& host, const std::string& monitor,
                       const std::string& change, const std::string& description) {
  std::ofstream(folder().Path(kMonitoring), std::ios::binary | std::ios::app)
      << kZero + second << ',' << host << ',' << monitor << ',' << change << ',' << description << "\r\n";
  newest_ = description;
}

void AdminConsole::StartAndWait() {
  Start({"-ns", "--edition=Administrator"});
  Await("table cell", newest_);
  AwaitActive();
}

void AdminConsole::AwaitActive(const std::string& title) {
  const auto active = [&] {
    const auto window = screen().WithTitle(title);
    return window && screen().Active() == *window;
  };
  if (!Eventually(active)) throw std::runtime_error("\"" + title + "\" never became active:\n" + Log());
}

void AdminConsole::BringForward(const std::string& title) {
  const auto window = screen().WithTitle(title);
  if (!window) throw std::runtime_error("no window \"" + title + "\":\n" + Tree().Tree());
  screen().Activate(*window);
  AwaitActive(title);
}

std::vector<std::string> AdminConsole::Column(int column, const std::string& table) {
  const auto found = Find("table", table);
  std::vector<std::string> texts;
  for (int row = 0, rows = found ? found->Rows() : 0; row < rows; ++row) {
    const auto cell = found->Cell(row, column);
    texts.push_back(cell && cell->Showing() ? cell->name() : "not in sight");
  }
  return texts;
}

void AdminConsole::AwaitColumn(int column, const std::vector<std::string>& texts, const std::string& table) {
  std::vector<std::string> seen;
  if (!Eventually([&] { return (seen = Column(column, table)) == texts; }))
    throw std::runtime_error(table + " shows " + Joined(seen) + " and not " + Joined(texts) + "\n" +
                             Tree().Tree());
}

std::optional<Accessible> AdminConsole::Node(const std::string& begin, const std::string& part) {
  const auto tree = Find("tree", "System State");
  if (!tree) return std::nullopt;
  return tree->Find([&](const Accessible& thing) {
    const std::string name = thing.role() == "table cell" ? thing.name() : "";
    return name.starts_with(begin) && name.find(part) != std::string::npos;
  });
}

void AdminConsole::AwaitNode(const std::string& begin, const std::string& part) {
  if (!Eventually([&] { return Node(begin, part).has_value(); }))
    throw std::runtime_error("no node \"" + begin + "..." + part + "\":\n" + Tree().Tree());
}

void AdminConsole::OpenBranch(const std::string& begin) {
  AwaitNode(begin);
  ClickOn(*Node(begin));
  screen().Key("Right");
}

void AdminConsole::AwaitMoment(const std::string& second) {
  AwaitNode("System State @", second);
}

}  // namespace zendrix::desktop
