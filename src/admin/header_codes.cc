#include "admin/header_codes.h"

namespace zendrix::admin {

int ColumnCodeOfHeader(std::string_view header) {
  if (header == "Date/Time") return 1;
  if (header == "Hostname") return 2;
  if (header == "Monitor") return 3;
  if (header == "Change") return 4;
  if (header == "Description") return 8;
  return 999;
}

}  // namespace zendrix::admin
