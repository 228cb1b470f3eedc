// Everything that the Agent reads of a host, as one hostile text: no reader may crash, and no name may
// leave its cleaning with a character that means something in a line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "agent/host/commands.h"
#include "agent/host/distinct_name.h"
#include "agent/host/parse_accounts.h"
#include "agent/host/parse_autorun.h"
#include "agent/host/parse_modules.h"
#include "agent/host/parse_network.h"
#include "agent/host/parse_processes.h"
#include "agent/host/places.h"
#include "agent/host/text.h"
#include "agent/record/lines.h"

namespace {

using namespace zendrix::agent;

void Require(bool holds) {
  if (!holds) std::abort();
}

void RequireClean(std::string_view name) {
  Require(!name.empty() && name.size() <= kNameLimit + 1);
  for (const char byte : name) {
    const auto code = static_cast<unsigned char>(byte);
    Require(code >= 32 && code != 127 &&
            std::string_view("|,;=:*'\"\\").find(byte) == std::string_view::npos);
  }
}

// The line of an event with this description still has its seven fields and its one end.
void RequireLine(const std::string& description) {
  Batch batch;
  Item item;
  item.monitor = monitor::kProcesses;
  item.description = description;
  batch.events = PresentEvents({item});
  const std::string line = RenderBatch(Form::kHome, {1, "h", "1"}, batch).bytes;
  Require(SplitFields(line, '|').size() == 7 && line.find('\n') == line.size() - 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string name = CleanName(text);
  RequireClean(name);
  RequireLine(name);
  RequireClean(DistinctName(text));
  if (const auto stat = ParseProcessStat(text)) RequireClean(CleanName(stat->name));
  ParseResidentKb(text);
  ParseShareKb(text);
  ParseProgramFile(text);
  ParseSocketInode(text);
  for (const Socket& socket : ParseSocketTable(text)) {
    Require(socket.remote.address.find(':') == std::string::npos);
  }
  for (const std::string& module : ParseModules(text)) Require(module.find_first_of(" \t\n") == module.npos);
  ParseTrafficBytes(text);
  if (const auto percent = ParseMemoryPercent(text)) Require(*percent >= 0 && *percent <= 100);
  ParseAccounts(text);
  for (const Login& login : ParseLogins(text)) Require(login.user.size() <= 32 && login.host.size() <= 256);
  const auto failures = ParseFailures(text);
  Require(failures.size() <= text.size() / kLoginRecordSize);
  for (const Login& login : failures) Require(login.user.size() <= 32 && login.host.size() <= 256);
  Require(ParseDesktopCommands(text).texts.size() <= kMostCommands);
  for (const std::string& command : ParseUnitCommands(text).texts) ReadCommand(command);
  const Command command = ReadCommand(text);
  Require(command.program.size() <= text.size());
  Require(NormalPath(text).find("//") == std::string::npos);
  if (InSystemFolder(text)) Require(!InTemporaryFolder(text));
  LooksLikeKernelThread(text);
  return 0;
}
