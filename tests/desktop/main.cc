#include <gmock/gmock.h>

#include <exception>
#include <iostream>

#include "desktop/console_program.h"
#include "desktop/guarded_run.h"

using namespace zendrix::desktop;

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  if (::testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  return GuardedRun(
      [](const std::string& folder) { Install(ZENDRIX_BUILT_PROGRAMS, folder + "/installation"); },
      [](const std::string& folder) {
        try {
          TheStage() = {folder + "/installation", std::make_unique<Desktop>(folder + "/mine")};
        } catch (const std::exception& failure) {
          std::cerr << "no desktop: " << failure.what() << '\n';
          return 1;
        }
        const int status = RUN_ALL_TESTS();
        TheStage().desktop.reset();
        return status;
      });
}
