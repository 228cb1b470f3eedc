// The seams as a benchmark needs them: real files, clock, regional settings (with readable dates, as the
// console has them) and message loop; whatever would speak to the user, the desktop or a service is the twin
// in memory.
#pragma once

#include <string>

#include "core/legible_locale.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_locale.h"
#include "platform/linux/poll_loop.h"
#include "platform/memory/memory_platform.h"
#include "platform/seams.h"

namespace zendrix::bench {

struct BenchPlatform {
  platform::LinuxFiles files;
  platform::LinuxClock clock;
  platform::LinuxLocale users_locale;
  core::LegibleLocale locale{users_locale, clock};
  platform::LinuxFamily family{"."};
  platform::PollLoop loop;
  platform::MemoryPlatform twins;

  platform::Seams seams() {
    return {
        files,          clock,        locale, twins.host,          twins.shell,        twins.instance_lock,
        twins.services, loop,         loop,   twins.message_boxes, twins.file_dialogs, twins.colour_dialogs,
        family,         twins.process};
  }
};

}  // namespace zendrix::bench
