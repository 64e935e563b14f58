#pragma once

#include <functional>

namespace app {

// Makes SIGTERM, SIGINT and SIGHUP an orderly end of the running application, the same as closing its window.
// Call once, on the main thread, when the application object exists.
void quitOnTerminationSignals();

// Calls `end` once, when the running application ends: as it quits, or in exit(), which is where the display server's
// end leads, without another turn of the event loop. A process that is killed does not call it. Call once, on the main
// thread, when the application object exists, and run its event loop while all that `end` uses is there.
void callAtEnd(std::function<void()> end);

}  // namespace app
