// Locales of the C library for tests: compiled from the sources that the machine has (package "locales"), so
// that the machine's own set plays no part. A compiled locale is kept in a folder that outlives the test.
#pragma once

#include <string>
#include <vector>

#include "platform/locale.h"

namespace zendrix::test {

// Names of the sources that say how dates are written, sorted: "nb_NO", "ca_ES@valencia".
std::vector<std::string> LocaleSources();

// The folder for LOCPATH: ZENDRIX_TEST_LOCPATH, or one in the build folder.
std::string LocaleFolder();

// Compiles the dates and numbers of a source, unless that has been done. The locale's name for LC_ALL
// ("nb_NO.UTF-8"); empty when localedef cannot build it. Any number of processes may build at a time.
std::string BuildLocale(const std::string& source);

// The settings that the console takes from a locale built before.
platform::LocaleInfo SettingsOf(const std::string& locale);

}  // namespace zendrix::test
