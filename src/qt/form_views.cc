#include "qt/form_views.h"

#include "qt/admin/frm_chart.h"
#include "qt/admin/frm_filters.h"
#include "qt/admin/frm_find.h"
#include "qt/admin/frm_log.h"
#include "qt/admin/frm_main.h"
#include "qt/admin/frm_options.h"
#include "qt/home/frm_more_info.h"
#include "qt/home/frm_new_update.h"
#include "qt/home/frm_notify_msg.h"
#include "qt/home/frm_pop_up_msg.h"
#include "qt/home/frm_quarantine.h"
#include "qt/home/frm_survey.h"
#include "qt/home/frm_tour.h"
#include "qt/home/home_window.h"
#include "qt/small_windows.h"

namespace zendrix::qt {
namespace {

template <class Form, class View>
std::unique_ptr<QWidget> Make(widgets::Form& form, const Toolkit& kit) {
  auto* const wanted = dynamic_cast<Form*>(&form);
  return wanted ? std::make_unique<View>(*wanted, kit) : nullptr;
}

constexpr auto kViews = {
    Make<core::frmSplash, SplashWindow>,      //
    Make<core::frmMsg, MessageWindow>,        //
    Make<core::frmAbout, AboutWindow>,        //
    Make<home::frmNewUI, HomeWindow>,         //
    Make<home::frmPopUpMsg, IntrusionPopUp>,  //
    Make<home::frmNotifyMsg, NoticeWindow>,   //
    Make<home::frmMoreInfo, MoreInfoWindow>,  //
    Make<home::frmQuarantine, QuarantineWindow>,
    Make<home::frmNewUpdate, NewUpdateWindow>,  //
    Make<home::frmTour, TourWindow>,            //
    Make<home::frmSurvey, SurveyWindow>,        //
    Make<admin::frmMain, AdminWindow>,          //
    Make<admin::frmLog, LogWindow>,             //
    Make<admin::frmChart, ChartWindow>,         //
    Make<admin::frmOptions, OptionsDialog>,
    Make<admin::frmFilters, FiltersWindow>,  //
    Make<admin::frmFind, FindDialog>,
};

}  // namespace

std::unique_ptr<QWidget> MakeView(widgets::Form& form, const Toolkit& kit) {
  for (const auto make : kViews)
    if (auto view = make(form, kit)) return view;
  return nullptr;
}

}  // namespace zendrix::qt
