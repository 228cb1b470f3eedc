// What has to be settled before the toolkit's application object exists, and what belongs to it right after.
#pragma once

namespace zendrix::app {

void BeforeApplication();
void AfterApplication();

}  // namespace zendrix::app
