// The helper's life on the bus: it takes its name, serves whoever asks, and ends when nobody has asked for a
// while and nothing waits for an answer.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>

namespace zendrix::act {

struct Settings {
  std::string folder = "/var/lib/zendrix/quarantine";  // the superuser's own (0700); made when it is missing
  std::string monitoring_file = "/var/lib/zendrix/home/KorvessaMonitoring.kvl";
  // What the Agent follows and what the mailer reads; in folders of the superuser's that their groups may
  // read.
  std::string decisions_file = "/var/lib/zendrix/decisions/KorvessaActivations.kvl";
  std::string mail_file = "/etc/zendrix/KorvessaSMTPConfig.kvl";
  std::string agent = "zendrix";                // the Agent's user, by name or number
  std::chrono::milliseconds idle{60'000};       // without work
  std::chrono::milliseconds patience{120'000};  // of a question to the user
};

// Exit status: 0; 1 when there is no bus, no name, no folder or no such user, told on the standard error.
int Run(const Settings& settings);

}  // namespace zendrix::act
