#include "alerts/current_description.h"

#include "alerts/risk.h"
#include "alerts/summary_table.h"
#include "alerts/templates.h"
#include "core/guards.h"
#include "core/number_rules.h"

namespace zendrix::alerts {
namespace {

constexpr char kEventTableHeader[] =
    "<tr ALIGN='left' VALIGN='top'><td width=18>"
    "<tr ALIGN='left' VALIGN='center'><th width=18 bgcolor='#0052A5'>"
    "</th><th bgcolor='#0052A5'><font size=1 color='#FFFFFF'>"
    " Event"
    "</font></th><th bgcolor='#0052A5'><font size=2 color='#FFFFFF'>"
    "# times observed*</font></th></tr></table>";
constexpr char kDetailsOpening[] =
    "<A ID='H1' href='showhide'>[Show details]</A><br><div ID='H2' style='display:none'>";
constexpr char kDetailsEmpty[] =
    "<A ID='H1' href='showhide'>[Show details]</A><br><div ID='H2' style='display:none'>  </div>";
constexpr char kDetailsShown[] =
    "<A ID='H1' href='showhide'>[Hide details]</A><br><div ID='H2' style='display:'>";
constexpr std::size_t kDateLength = 10;
constexpr std::size_t kTimeLength = 11;

std::string LastCharacters(const std::string& text, std::size_t count) {
  return text.size() <= count ? text : text.substr(text.size() - count);
}

class AlertText {
 public:
  AlertText(const core::AppState& state, core::ErrorLog& log, AlertContext& context, bool short_form,
            Purpose purpose)
      : state_(state),
        log_(log),
        context_(context),
        alert_(context.NotableInfo.front()),
        short_form_(short_form),
        purpose_(purpose),
        text_(purpose) {}

  // Fills `result` as soon as there is one, so that a failure behind that leaves it.
  void Build(MarkedText& result) {
    if (const auto found = FindTemplate(state_.Desc[2], Key())) {
      if (alert_.Monitor == "Aggregation") {
        text_.Append(*found);
        Fill();
      } else {
        text_.Append("* Error with Alert type * ");
      }
    }
    result = std::move(text_);
    if (!short_form_) result.Append(Footnote());
  }

 private:
  std::string Key() const {
    const bool number = core::IsNumeric(alert_.Change, state_.seams.locale.Current());
    return alert_.Monitor + (number ? ",N," : "," + alert_.Change + ",");
  }

  void Fill() {
    context_.AlertDate = alert_.DateTime.substr(0, kDateLength);
    context_.AlertTime = LastCharacters(alert_.DateTime, kTimeLength);
    text_.Replace("<date>", context_.AlertDate, Origin::kEvent);
    if (!short_form_) text_.Replace("<time>.<br>", std::string("<time>.") + kEventTableHeader);
    text_.Replace("<time>", context_.AlertTime, Origin::kEvent);
    Frame();
    const MarkedText corrected = SummaryTable(state_, log_, context_, "success", short_form_, purpose_);
    const MarkedText not_corrected = SummaryTable(state_, log_, context_, "failed", short_form_, purpose_);
    text_.Replace("<Corrected>", corrected);
    text_.Replace("<NotCorrected>", not_corrected);
    text_.Replace("<risklevel>", GetRiskName(alert_.Change, state_.settings, state_.seams.locale.Current()));
    OfferAction(!corrected.empty(), !not_corrected.empty());
    if (state_.settings.ShowDetailsOpen) text_.Replace(kDetailsOpening, kDetailsShown);
  }

  void Frame() {
    MarkedText framed(purpose_);
    if (!short_form_) framed.Append("<tr ALIGN='left' VALIGN='top'><td width=18></td><td>");
    framed.Append(IconTag(state_, purpose_, "\\Images\\bug_red.png")).Append(text_);
    if (!short_form_) framed.Append("<br><br></td></tr>");
    text_ = framed;
  }

  // What was blocked can be allowed; failing that, what was not can be blocked. The placeholder of the other
  // stays, an unknown tag that a page does not show.
  void OfferAction(bool was_blocked, bool was_not_blocked) {
    if (was_blocked) {
      text_.Replace("<undotext>", ActionFace("\\Images\\undo.png", "[Allow]"));
    } else if (was_not_blocked) {
      text_.Replace("<dotext>", ActionFace("\\Images\\redo.png", "[Block]"));
    } else {
      text_.Replace("<dotext>", "");
      text_.Replace("<undotext>", "");
      text_.Replace(kDetailsEmpty, "<br>" + DetailsText());
    }
  }

  MarkedText ActionFace(std::string_view image, std::string_view caption) const {
    MarkedText face(purpose_, "<IMG SRC='");
    face.Append(AppPath(state_), Origin::kEventInLink).Append(image);
    return face.Append("' ALIGN=bottom HSPACE=4>").Append(caption);
  }

  std::string DetailsText() const {
    return FindTemplate(state_.Desc[9], "030,").value_or("No Details Available");
  }

  MarkedText Footnote() const {
    MarkedText footnote(purpose_, "<font size=1>* Since ");
    footnote.Append(context_.FirstEventDateTime, Origin::kEvent);
    footnote.Append(", which is the earliest date for which Zendrix has historical information</font>");
    return footnote;
  }

  const core::AppState& state_;
  core::ErrorLog& log_;
  AlertContext& context_;
  const NotableRecord& alert_;
  bool short_form_;
  Purpose purpose_;
  MarkedText text_;
};

}  // namespace

MarkedText CurrentDescription(const core::AppState& state, core::ErrorLog& log, AlertContext& context,
                              bool short_form, Purpose purpose) {
  MarkedText text(purpose);
  core::OrLog(log, kCurrentDescriptionPlace, [&] {
    if (context.NotableInfo.empty()) return;
    if (state.Desc[2].empty())
      text = WithoutDictionary(context, purpose);
    else
      AlertText(state, log, context, short_form, purpose).Build(text);
  });
  return text;
}

}  // namespace zendrix::alerts
