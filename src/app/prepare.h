// What has to be settled before the toolkit's application object exists, and what belongs to it right after.
#pragma once

namespace zendrix::app {

// Takes what would steer the toolkit or the browser out of the environment (but in a build with
// ZENDRIX_TEST_BUILD, which keeps it), then settles the browser's own switches. To be called first in main,
// while there is one thread.
void BeforeApplication();
void AfterApplication();

}  // namespace zendrix::app
