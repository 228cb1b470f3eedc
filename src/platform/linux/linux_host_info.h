// Facts about this machine.
#pragma once

#include "platform/host_info.h"

namespace zendrix::platform {

class LinuxHostInfo : public HostInfo {
 public:
  // The host name as the kernel knows it.
  std::string ComputerName() override;
  // The first of these that is on PATH: hardinfo2, hardinfo, kinfocenter, lshw-gtk, gnome-system-monitor,
  // mate-system-monitor, plasma-systemmonitor, xfce4-taskmanager. The list goes from programs that describe
  // the machine to those that at least show its state.
  std::string SystemInformationTool() override;
  // By the effective user, both.
  std::string UserName() override;
  bool RunsAsRoot() override;
};

}  // namespace zendrix::platform
