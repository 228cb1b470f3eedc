// Regional settings that a test chooses.
#pragma once

#include "platform/locale.h"

namespace zendrix::platform {

class FixedLocale : public LocaleSource {
 public:
  const LocaleInfo& Current() override { return info; }
  LocaleInfo info;
};

}  // namespace zendrix::platform
