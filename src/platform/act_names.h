// How the helper that acts is called on the system bus. Texts that a file system or an event names go as
// bytes.
//
//   Block(ay monitor, ay description, x second, x alert_second, b shown) -> (b done, ay sentence)
//   Allow(s entry) -> (b done, ay sentence)
//   List() -> (b known, ay entries or sentence)
//   BlockAgain(ay path, s sha256, au processes) -> (b done, ay sentence)
//   Decide(x alert_second, ay code, b block) -> (b done, ay sentence)
//   SetMail(ay settings) -> (b done, ay sentence)
#pragma once

namespace zendrix::platform {

inline constexpr char kActName[] = "com.korvessa.Zendrix.Act1";
inline constexpr char kActPath[] = "/com/korvessa/Zendrix/Act1";
inline constexpr char kActInterface[] = "com.korvessa.Zendrix.Act1";

}  // namespace zendrix::platform
