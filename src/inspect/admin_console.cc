#include "inspect/admin_console.h"

#include <charconv>

#include "inspect/document.h"

namespace zendrix::inspect {
namespace {

// A font whose characters are all of one width.
admin::TextMetrics FixedPitch() {
  constexpr int kTwips = 105;
  constexpr int kTwipsPerPixel = 15;
  admin::TextMetrics metrics;
  metrics.twips = [](std::string_view text) { return static_cast<int>(text.size()) * kTwips; };
  metrics.pixels = [](std::string_view text) {
    return static_cast<int>(text.size()) * kTwips / kTwipsPerPixel;
  };
  metrics.twips_per_pixel = kTwipsPerPixel;
  return metrics;
}

}  // namespace

AdminConsole::AdminConsole(Console& console, const std::string& file)
    : administrator_(console.state(), console.log(), FixedPitch) {
  // The grid is the Administrator console's, whatever edition was asked for.
  console.state().ProductEdition = "Administrator";
  if (!file.empty()) {
    administrator_.grid_file = console.ResolveFile(file);
    if (!console.state().seams.files.Exists(administrator_.grid_file))
      throw NoSuchThing("File " + file + " not found.");
  }
  administrator_.Start("");
}

int AdminConsole::Row(const std::string& number) {
  int row = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), row);
  const bool whole = error == std::errc() && end == number.data() + number.size();
  if (!whole || row < 1 || row > grid().DataRows()) throw NoSuchThing("Row " + number + " not found.");
  return row;
}

}  // namespace zendrix::inspect
