// Everything outside the program, in memory: one object per test. The members are the twins of the seams and
// may be set and asked at will; `seams()` is what the code under test gets.
#pragma once

#include <memory>

#include "platform/memory/fake_clock.h"
#include "platform/memory/fake_service_manager.h"
#include "platform/memory/fake_timers.h"
#include "platform/memory/fixed_locale.h"
#include "platform/memory/memory_family.h"
#include "platform/memory/memory_files.h"
#include "platform/memory/memory_host.h"
#include "platform/memory/memory_instance_lock.h"
#include "platform/memory/recording_agent_link.h"
#include "platform/memory/recording_shell.h"
#include "platform/memory/scripted_dialogs.h"
#include "platform/memory/throwing_process.h"
#include "platform/seams.h"

namespace zendrix::platform {

struct MemoryPlatform {
  // Two bundles with one registry are two processes of one machine.
  explicit MemoryPlatform(
      std::shared_ptr<MemoryInstanceRegistry> registry = std::make_shared<MemoryInstanceRegistry>())
      : instance_lock(timers, std::move(registry)) {}
  MemoryPlatform(const MemoryPlatform&) = delete;
  MemoryPlatform& operator=(const MemoryPlatform&) = delete;

  MemoryFiles files;
  FakeClock clock;
  FixedLocale locale;
  MemoryHost host;
  RecordingShell shell;
  FakeTimers timers{clock};
  MemoryInstanceLock instance_lock;
  FakeServiceManager services;
  ScriptedBoxes message_boxes{timers};
  ScriptedFileDialogs file_dialogs;
  ScriptedColourDialogs colour_dialogs;
  MemoryFamily family;
  ThrowingProcess process;
  RecordingAgentLink agent_link;

  Seams seams() {
    return {files,  clock,         locale,       host,           shell,  instance_lock, services,  timers,
            timers, message_boxes, file_dialogs, colour_dialogs, family, process,       agent_link};
  }
};

}  // namespace zendrix::platform
