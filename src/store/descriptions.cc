#include "store/descriptions.h"

#include <array>

#include "core/guards.h"
#include "core/hash_utils.h"
#include "core/path_text.h"
#include "core/text_rules.h"

namespace zendrix::store {
namespace {

constexpr char kProcedure[] = "Initial:LoadDescArrays";
constexpr std::array kLoadedFiles = {0, 1, 2, 4, 5, 6, 7, 9, 10};

void LoadOne(core::AppState& state, core::ErrorLog& log, int n) {
  const std::string path = DescPath(state, n);
  if (!state.seams.files.Exists(path)) return;
  core::DescArray& lines = state.Desc[static_cast<std::size_t>(n)];
  lines.clear();
  const auto text = core::HashUtils(state.seams.files, state.seams.family).ReadVerified(path);
  if (!text) {
    log.WriteLog(kProcedure, "Error: stored hash does not match for " + core::PathText(path));
    return;
  }
  for (const std::string_view line : core::Split(*text, "\r\n")) lines.emplace_back(line);
}

}  // namespace

void LoadDescArrays(core::AppState& state, core::ErrorLog& log) {
  core::OrFatal(log, kProcedure, [&] {
    for (const int n : kLoadedFiles) LoadOne(state, log, n);
  });
}

std::string DescPath(const core::AppState& state, int n) {
  return platform::JoinPath(state.ProgramFolder, "KorvessaDesc" + std::to_string(n) + ".kvl");
}

}  // namespace zendrix::store
