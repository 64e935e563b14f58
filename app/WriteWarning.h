#pragma once

#include <QObject>
#include <filesystem>

namespace platform {
struct Device;
}

namespace app {

// Says once, on standard error and by Device::notify, what helps whoever may not write to the folder of the files. The
// screens are silent about it: without this, every change would just be gone on the next visit. Looks when the first
// frame is shown, so that it is not waited for. Main thread.
class WriteWarning : public QObject {
public:
    // To be made before a window is shown. `device` outlives this object.
    WriteWarning(std::filesystem::path folder, const platform::Device& device);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void warn() const;

    std::filesystem::path folder_;
    const platform::Device& device_;
};

}  // namespace app
