// Everything outside the program, in one bundle of references. It is put together once (by the executable,
// the inspector or a test) and outlives everything that uses it.
#pragma once

#include "platform/agent_link.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/family_libraries.h"
#include "platform/files.h"
#include "platform/host_info.h"
#include "platform/instance_lock.h"
#include "platform/locale.h"
#include "platform/message_loop.h"
#include "platform/process.h"
#include "platform/service_manager.h"
#include "platform/shell.h"

namespace zendrix::platform {

struct Seams {
  Files& files;
  Clock& clock;
  LocaleSource& locale;
  HostInfo& host;
  Shell& shell;
  InstanceLock& instance_lock;
  ServiceManager& services;
  MessageLoop& loop;
  TimerMaker& timers;
  MessageBoxes& message_boxes;
  FileDialogs& file_dialogs;
  ColourDialogs& colour_dialogs;
  FamilyLibraries& family;
  Process& process;
  AgentLink& agent_link = NobodyToTell();
};

}  // namespace zendrix::platform
