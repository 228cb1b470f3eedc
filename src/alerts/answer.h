// The two directions of the user's answer to an alert.
#pragma once

namespace zendrix::alerts {

enum class Answer {
  kBlock,  // what the alert reports must not happen again
  kAllow,  // it may
};

}  // namespace zendrix::alerts
