// Dates with a time of day: a box to tick, which says whether there is a moment at all, and beside it the
// moment, which is typed or picked from a calendar.
#pragma once

#include <QString>
#include <string_view>

#include "qt/bind.h"
#include "widgets/date_time_box.h"

class QCheckBox;
class QDateTimeEdit;

namespace zendrix::qt {

struct DateTimeField {
  QCheckBox* given;
  QDateTimeEdit* moment;
};

// `label` stands beside the box, with its access key.
DateTimeField MakeDateTimeBox(widgets::DateTimeBox& box, const QString& label, QChar access_key,
                              const Toolkit& kit);

// A picture of the regional settings in the toolkit's own vocabulary, which has hours up to twelve only
// beside their half of the day, and years of two or four digits.
QString DateTimePicture(std::string_view picture);

}  // namespace zendrix::qt
