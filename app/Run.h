#pragma once

#include <thread>

class QApplication;

namespace platform {
struct Device;
}

namespace app {

// Settles what has to be settled before the application object is made: the app brings its own look, whatever the
// desktop's theme, colours and font sizes. Returns the machine's fonts being read meanwhile, for run() to wait for.
[[nodiscard]] std::jthread prepare();

// Runs the app on a device until it ends in an orderly way (window closed, SIGTERM). Returns the exit status.
int run(QApplication& application, const platform::Device& device, std::jthread fonts);

}  // namespace app
