#include "support/fuzzed_alerts.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "core/hash_utils.h"
#include "store/descriptions.h"

namespace zendrix::test {
namespace {

constexpr char kMonitoringPath[] = "/app/KorvessaMonitoring.kvl";

}  // namespace

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

std::string TakePiece(std::string_view& input) {
  const auto end = input.find('\x1F');
  std::string piece(input.substr(0, end));
  input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
  return piece;
}

FuzzedAlerts::FuzzedAlerts()
    : seams_(platform_.seams()),
      state_(seams_),
      log_(state_),
      reader_(state_, log_),
      alerts_(state_, log_, [this] { return reader_.EventTable; }) {
  state_.ProgramFolder = "/app";
  state_.settings.NormalTop = 90.909088F;
  state_.settings.SuspiciousTop = 95.454544F;
}

void FuzzedAlerts::Put(const std::string& name, std::string_view bytes) {
  platform_.files.Put("/app/" + name, bytes);
}

void FuzzedAlerts::PutDescriptions(int number, std::string_view bytes) {
  const std::string path = store::DescPath(state_, number);
  platform_.files.Put(path, bytes);
  core::HashUtils(platform_.files, platform_.family).StoreFileHash(path);
}

bool FuzzedAlerts::Load() {
  try {
    store::LoadDescArrays(state_, log_);
    reader_.InitClass(kMonitoringPath);
  } catch (const platform::ProcessEnded&) {
    return false;
  }
  return reader_.EventTable != nullptr;
}

std::vector<std::string> FuzzedAlerts::Ids(std::size_t most) const {
  std::vector<std::string> ids;
  const store::EventTable& rows = *reader_.EventTable;
  const auto count = static_cast<store::Bookmark>(std::min<std::size_t>(most, rows.RowCount()));
  for (store::Bookmark row = 0; row < count; ++row) ids.push_back(std::to_string(rows.ID(row)));
  return ids;
}

}  // namespace zendrix::test
