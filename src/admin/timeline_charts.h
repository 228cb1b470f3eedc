// The tables and texts that the timeline's charts are drawn from: a row for each slot, the oldest first, and
// a column for each displayed monitor. They follow the settings of the moment: of a slot or monitor that the
// last count did not know, nothing is shown until the next one.
#pragma once

#include <string>

#include "admin/time_slots.h"
#include "core/settings_values.h"
#include "widgets/chart.h"

namespace zendrix::admin {

// Rows are labelled by their numbers between quote marks, counted from the newest: "1".
widgets::ChartTable SmallChartTable(const core::Settings& settings, const TimeSlots& time_slots);
// Rows are labelled by their moments.
widgets::ChartTable LargeChartTable(const core::Settings& settings, const TimeSlots& time_slots);

// "Events x Minutes".
std::string ChartCaption(const core::Settings& settings);
// "Time (Minutes) / number of events in each time slot".
std::string ChartAxisTitle(const core::Settings& settings);

}  // namespace zendrix::admin
