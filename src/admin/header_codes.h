// The column codes that the grid's headings stand for in the settings.
#pragma once

#include <string_view>

namespace zendrix::admin {

// "Date/Time" 1, "Hostname" 2, "Monitor" 3, "Change" 4, "Description" 8, anything else 999.
int ColumnCodeOfHeader(std::string_view header);

}  // namespace zendrix::admin
