// The source that needs no right and no kernel's help: it looks at the host from time to time and tells what
// differs from the look before. What comes and goes between two looks it never sees; every monitor that no
// better source covers is its.
#pragma once

#include <cstdint>

#include "agent/host/host_view.h"
#include "agent/sources/differences.h"
#include "agent/sources/source.h"
#include "platform/clock.h"

namespace zendrix::agent {

class PollingSource : public Source {
 public:
  // The first look is the first Drain. The references outlive the object.
  PollingSource(HostView& host, platform::Clock& clock, std::uint64_t own_pid, std::int64_t interval_ms,
                std::vector<std::string_view> monitors);

  std::span<const std::string_view> Monitors() const override { return monitors_; }
  SourceLevel level() const override;
  // Entries of the monitor that the last look left out, being too many or not to be read.
  std::uint64_t LeftOutOf(std::string_view monitor) const { return differences_.LeftOutOf(monitor); }
  std::uint64_t left_out() const { return differences_.left_out(); }
  int Handle() const override { return -1; }
  // Looks when it is time to.
  void Drain(std::vector<Observation>& into) override;

 private:
  HostView& host_;
  platform::Clock& clock_;
  const std::uint64_t own_pid_;
  const std::int64_t interval_ms_;
  const std::vector<std::string_view> monitors_;
  Differences differences_;
  std::int64_t next_ms_;
};

// What a look at the whole host cannot tell this Agent for want of rights; empty when it can tell all.
std::string WhatLooksCannotTell(HostView& host);

}  // namespace zendrix::agent
