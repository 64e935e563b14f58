#pragma once

namespace app {

// Makes SIGTERM, SIGINT and SIGHUP an orderly end of the running application, the same as closing its window.
// Call once, on the main thread, when the application object exists.
void quitOnTerminationSignals();

}  // namespace app
