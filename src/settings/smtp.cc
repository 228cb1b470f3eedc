#include "settings/smtp.h"

#include <optional>
#include <vector>

#include "core/guards.h"
#include "core/hash_utils.h"
#include "core/text_rules.h"

namespace zendrix::settings {
namespace {

constexpr char kAddressKey[] = "Send Alerts To=";
constexpr char kServerKey[] = "SMTP Server=";

// What stands behind the first "=" of a field; the key is not looked at. Empty when there is no "=".
std::string_view ValueOf(std::string_view field) {
  const auto equals = field.find('=');
  return equals == std::string_view::npos ? std::string_view() : field.substr(equals + 1);
}

std::string SmtpPath(const core::AppState& state) {
  return platform::JoinPath(state.ProgramFolder, kSmtpFileName);
}

void TellMailer(core::AppState& state, core::ErrorLog& log, const std::string& settings) {
  state.seams.agent_link.SetMail(settings, [&state, &log](const std::string& sentence) {
    log.WriteLog("Utils : SaveSMTPData", sentence);
    state.seams.message_boxes.Show({state.ProductName, sentence, platform::BoxIcon::kExclamation});
  });
}

}  // namespace

SmtpData ParseSmtpText(std::string_view text) {
  // An empty file has no line to read: its text then splits into no fields at all.
  const auto fields = core::Split(text.substr(0, text.find_first_of("\r\n")), ";");
  if (fields.size() < 2) return {};
  SmtpData data;
  data.Address = ValueOf(fields[0]);
  const std::string_view server = ValueOf(fields[1]);
  const auto colon = server.find(':');
  data.Server = server.substr(0, colon);
  if (colon != std::string_view::npos) data.Port = server.substr(colon + 1);
  return data;
}

std::string SmtpTextWith(const SmtpData& data, std::string_view present) {
  auto fields = core::Split(present, ";");
  std::string remainder;
  if (fields.size() < 2) {
    remainder = present;
    fields.assign(2, {});
  }
  std::string text = kAddressKey;
  text.append(core::Trim(data.Address)).append(";").append(kServerKey);
  text.append(core::Trim(data.Server)).append(":").append(core::Trim(data.Port));
  for (std::size_t i = 2; i < fields.size(); ++i) text.append(";").append(fields[i]);
  if (!remainder.empty())
    text.append(";").append(remainder);
  else if (fields.size() == 2)
    text.append(";");
  return text;
}

SmtpData LoadSMTPData(core::AppState& state, core::ErrorLog& log, bool* told) {
  SmtpData data;
  bool once = false;
  bool& known = told ? *told : once;
  core::OrLog(log, "Utils : LoadSMTPData", [&] {
    const std::string path = SmtpPath(state);
    core::HashUtils hashes(state.seams.files, state.seams.family);
    hashes.FinishInterruptedSave(path);
    std::optional<std::string> text;
    if (state.seams.files.Exists(path) && !(text = hashes.ReadVerified(path))) {
      if (known) return;
      known = true;
      state.seams.message_boxes.Show({state.ProductName,
                                      "Invalid SMTP configuration file. Loading default values",
                                      platform::BoxIcon::kInformation, platform::BoxButtons::kOk});
      core::ValueOrRaise(state.seams.files.Remove(path));
    }
    known = false;
    if (text) data = ParseSmtpText(*text);
  });
  return data;
}

void SaveSMTPData(core::AppState& state, core::ErrorLog& log, const SmtpData& data, bool wanted) {
  core::OrLog(log, "Utils : SaveSMTPData", [&] {
    const std::string path = SmtpPath(state);
    core::HashUtils hashes(state.seams.files, state.seams.family);
    hashes.FinishInterruptedSave(path);
    std::string present;
    if (state.seams.files.Exists(path)) present = core::ValueOrRaise(state.seams.files.ReadAll(path));
    const std::string text = SmtpTextWith(data, present);
    hashes.SaveWithHash(path, text);
    TellMailer(state, log, wanted ? text : std::string());
  });
}

void SwitchMail(core::AppState& state, core::ErrorLog& log, bool wanted) {
  core::OrLog(log, "Utils : SaveSMTPData", [&] {
    const std::string path = SmtpPath(state);
    if (!state.seams.files.Exists(path)) return;
    if (!wanted) return TellMailer(state, log, std::string());
    // One that fails its hash is nobody's wish; the pane says so when it is opened next.
    core::HashUtils hashes(state.seams.files, state.seams.family);
    if (const auto text = hashes.ReadVerified(path)) TellMailer(state, log, *text);
  });
}

}  // namespace zendrix::settings
