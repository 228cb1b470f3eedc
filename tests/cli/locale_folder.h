// A folder with the locales that the tests switch the inspector to, whatever the machine has.
#pragma once

#include <string>

namespace zendrix::test {

// For LOCPATH: ZENDRIX_TEST_LOCPATH, or a folder that localedef fills once per test program. Empty when there
// is neither.
const std::string& LocaleFolder();

}  // namespace zendrix::test
