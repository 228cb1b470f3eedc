#include "control/portal.h"

#include "core/guards.h"
#include "core/portal_endpoint.h"
#include "core/version.h"
#include "widgets/wait_pointer.h"

namespace zendrix::control {
namespace {

struct Form {
  const char* type;
  bool product;        // names the product behind the host
  const char* reason;  // null: no such field
  const char* place;   // in the log
};

// Feedback fails under the name of Support; that is how its failures are known.
const Form& FormOf(PortalRequest request) {
  static constexpr Form kFeedback = {"UserFeedback", true, "", "frmNewUI : Support_Click"};
  static constexpr Form kSupport = {"UserSupport", true, "", "frmNewUI : Support_Click"};
  static constexpr Form kNewVersion = {"UserCheckNewVersion", false, nullptr, "frmNewUI : NewVer_Click"};
  static constexpr Form kSurvey = {"UserSurvey", true, "inUse", "frmNewUI : TakeSurvey"};
  static constexpr Form kTour = {"UserGettingStarted", true, "", "frmTour : Form_Load"};
  switch (request) {
    case PortalRequest::kFeedback:
      return kFeedback;
    case PortalRequest::kSupport:
      return kSupport;
    case PortalRequest::kNewVersion:
      return kNewVersion;
    case PortalRequest::kSurvey:
      return kSurvey;
    case PortalRequest::kTour:
      break;
  }
  return kTour;
}

std::string PlainVersion() {
  return std::to_string(core::kVersionMajor) + "." + std::to_string(core::kVersionMinor) + ".0." +
         std::to_string(core::kVersionRevision);
}

std::string HostIdentifier(core::AppState& state, widgets::Screen& screen) {
  const widgets::WaitPointer wait(screen);
  return core::ValueOrRaise(state.seams.family.GetHostIDExport("Zendrix"));
}

}  // namespace

std::string PortalUrl(core::AppState& state, widgets::Screen& screen, PortalRequest request) {
  const Form& form = FormOf(request);
  std::string url = core::PortalEndpoint(state) + "?PostType=" + form.type;
  url += "&HostID=" + HostIdentifier(state, screen);
  if (form.product) url += "&Product=ZendrixHome";
  url += "&Ver=" + PlainVersion();
  if (form.reason) url += std::string("&Reason=") + form.reason;
  return url;
}

bool GuardedPortalUrl(core::AppState& state, core::ErrorLog& log, widgets::Screen& screen,
                      PortalRequest request, std::string& url) {
  return core::OrLog(log, FormOf(request).place, [&] { url = PortalUrl(state, screen, request); });
}

void OpenPortal(core::AppState& state, core::ErrorLog& log, widgets::Screen& screen, PortalRequest request) {
  core::OrLog(log, FormOf(request).place,
              [&] { core::ValueOrRaise(state.seams.shell.Open(PortalUrl(state, screen, request))); });
}

}  // namespace zendrix::control
