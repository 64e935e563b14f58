#pragma once

#include <QObject>
#include <filesystem>

namespace platform {
struct Device;
}

namespace app {

// Warns once, on standard error and by Device::notify, when the folder of the files is not writable, and states the
// remedy. The screens show no errors: without the warning, changes would be lost silently. Runs after the first frame,
// so that it does not delay the start. Main thread.
class WriteWarning : public QObject {
public:
    // Create before a window is shown. `device` outlives this object.
    WriteWarning(std::filesystem::path folder, const platform::Device& device);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void warn() const;

    std::filesystem::path folder_;
    const platform::Device& device_;
};

}  // namespace app
