// Any history under any dictionaries is rendered without a failure, and no event can add markup to what is
// shown. An input is, each behind a byte 1F, the description files 2, 5, 9 and 10 and the monitoring file.
//
// Every character of the history that means something in a page is put between two marks that no template
// has. In a text to be shown such a character must not stand between its marks as it is. And a page is made
// of the same tags and attributes when every character of the alert's texts is a harmless one.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "alerts/links.h"
#include "support/browser_tokens.h"
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

// A letter in the place of every character at which no description is taken apart.
std::string Harmless(std::string text) {
  static constexpr std::string_view kKept = " :;=\\.,";
  for (char& character : text)
    if (kKept.find(character) == std::string_view::npos) character = 'Q';
  return text;
}

alerts::AlertContext Harmless(alerts::AlertContext context) {
  context.FirstEventDateTime = Harmless(context.FirstEventDateTime);
  for (alerts::NotableRecord& record : context.NotableInfo) {
    record.DateTime = Harmless(record.DateTime);
    record.Description = Harmless(record.Description);
  }
  return context;
}

// What the pages of the alert are made of.
std::vector<std::vector<std::string>> Shapes(test::FuzzedAlerts& console) {
  alerts::Renderer& renderer = console.alerts().renderer();
  const std::string link =
      alerts::GetLink(console.state(), console.log(), alerts::Purpose::kShown, "Windows Folder", "").Finish();
  constexpr std::size_t kHead = sizeof "<A HREF='" - 1;
  const std::string portal = link.substr(kHead, link.find("WindowsFolder&Desc=") - kHead);
  std::vector<std::vector<std::string>> shapes;
  const auto see = [&](const std::string& page) {
    shapes.push_back(test::ShapeOf(test::ReadAsBrowser(page), portal));
  };
  for (const bool short_form : {true, false}) see(renderer.GetCurrDesc(short_form, alerts::Purpose::kShown));
  const std::size_t entries = console.alerts().context().NotableInfo.size();
  for (std::size_t i = 0; i < entries; ++i) see(renderer.GetMonitorDesc(i, alerts::Purpose::kShown));
  return shapes;
}

void RequireSameShape(test::FuzzedAlerts& console) {
  alerts::AlertContext& context = console.alerts().context();
  const alerts::AlertContext hostile = context;
  const auto shapes = Shapes(console);
  context = Harmless(hostile);
  const auto harmless = Shapes(console);
  context = hostile;
  Require(shapes == harmless, "a page of the same tags as with harmless texts");
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
    RequireSameShape(console);
  }
  return 0;
}
