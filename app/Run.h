#pragma once

#include <thread>

class QApplication;

namespace platform {
struct Device;
}

namespace app {

class SingleInstance;

// Sets what must be set before the application object is created: style and palette of the app, independent of the
// desktop's theme, colours and font sizes. Returns the machine's fonts being read meanwhile, for run() to wait for.
[[nodiscard]] std::jthread prepare();

// Runs the app on a device until its window is closed or SIGTERM arrives. `instance` is this device's, whose exit
// status says nothing. Returns the exit status.
int run(QApplication& application, const platform::Device& device, const SingleInstance& instance, std::jthread fonts);

}  // namespace app
