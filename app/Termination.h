#pragma once

#include <functional>

namespace app {

// Makes SIGTERM, SIGINT and SIGHUP quit the event loop, as closing the window does. Call once, on the main thread,
// after the application object has been created.
void quitOnTerminationSignals();

// Calls `end` once when the application ends: on aboutToQuit(), or in exit(), which Qt calls when the display server
// disappears. Not called when the process is killed. Call once, on the main thread, after the application object has
// been created; the objects that `end` uses must live until the event loop returns.
void callAtEnd(std::function<void()> end);

}  // namespace app
