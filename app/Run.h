#pragma once

class QApplication;

namespace platform {
struct Device;
}

namespace app {

// Settles what has to be settled before the application object is made: the app brings its own look, whatever the
// desktop's theme, colours and font sizes.
void prepare();

// Runs the app on a device until it ends in an orderly way (window closed, SIGTERM). Returns the exit status.
int run(QApplication& application, const platform::Device& device);

}  // namespace app
