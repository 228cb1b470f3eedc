// Any history under any dictionaries is rendered without a failure, and no event can add markup to what is
// shown. An input is, each behind a byte 1F, the description files 2, 5, 9 and 10 and the monitoring file.
//
// Every character of the history that means something in a page is put between two marks that no template
// has. In a text to be shown such a character must not stand between its marks as it is.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/fuzzed_alerts.h"

using namespace zendrix;
using test::Require;

namespace {

constexpr std::size_t kMostAlerts = 12;
constexpr std::size_t kLargestDictionary = 4096;
constexpr char kBefore = '\xA4', kBehind = '\xA5';
constexpr std::string_view kSpecial = "<>&'\"";

bool IsMark(char character) {
  return character == kBefore || character == kBehind;
}

std::string WithMarks(std::string_view events) {
  std::string marked;
  for (const char character : events) {
    if (IsMark(character)) continue;
    const bool special = kSpecial.find(character) != std::string_view::npos;
    if (special) marked += kBefore;
    marked += character;
    if (special) marked += kBehind;
  }
  return marked;
}

// A template without marks, as they are or as a link spells them.
std::string WithoutMarks(std::string text) {
  text.resize(std::min(text.size(), kLargestDictionary));
  std::erase_if(text, IsMark);
  for (std::size_t at; (at = text.find("%A")) != std::string::npos;) text.erase(at, 1);
  return text;
}

void RequireNoMarkup(const std::string& shown) {
  for (const char special : kSpecial) {
    Require(shown.find({kBefore, special, kBehind}) == std::string::npos, "an event's character escaped");
    Require(shown.find(std::string("%A4") + special + "%A5") == std::string::npos,
            "an event's character in a link encoded");
  }
}

void Render(alerts::ConsoleAlerts& console_alerts) {
  alerts::Renderer& renderer = console_alerts.renderer();
  for (const bool short_form : {true, false}) {
    renderer.GetCurrDesc(short_form, alerts::Purpose::kExact);
    RequireNoMarkup(renderer.GetCurrDesc(short_form, alerts::Purpose::kShown));
    for (const char* kind : {"success", "failed"}) {
      const bool exact_empty = renderer.GetSummaryTable(kind, short_form, alerts::Purpose::kExact).empty();
      const std::string shown = renderer.GetSummaryTable(kind, short_form, alerts::Purpose::kShown);
      Require(shown.empty() == exact_empty, "a table for both purposes or for none");
      RequireNoMarkup(shown);
    }
  }
  const std::size_t entries = console_alerts.context().NotableInfo.size();
  for (std::size_t i = 0; i < entries; ++i) {
    renderer.GetMonitorDesc(i, alerts::Purpose::kExact);
    RequireNoMarkup(renderer.GetMonitorDesc(i, alerts::Purpose::kShown));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  test::FuzzedAlerts console;
  for (const int number : {2, 5, 9, 10})
    console.PutDescriptions(number, WithoutMarks(test::TakePiece(input)));
  console.Put("KorvessaMonitoring.kvl", WithMarks(input));
  if (!console.Load()) return 0;
  for (const std::string& id : console.Ids(kMostAlerts)) {
    console.state().settings.ShowDetailsOpen = !console.state().settings.ShowDetailsOpen;
    console.alerts().GetNotableInfo(id);
    Render(console.alerts());
  }
  return 0;
}
