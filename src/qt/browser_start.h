// What the browser needs before the application object exists: the scheme of the console's own pages, and the
// switches that a page of text calls for.
#pragma once

namespace zendrix::qt {

// Once per process, while it has one thread. Switches that the environment has already are left alone.
void BeforeBrowser();

}  // namespace zendrix::qt
