#pragma once

#include <QApplication>
#include <functional>
#include <memory>

#include "app/VxmAppDelegate.h"
#include "benchmarks/DeviceFolder.h"
#include "benchmarks/workers/FrameClock.h"
#include "platform/system/Device.h"

class QAbstractButton;

namespace platform {
class AlertView;
class DesktopApplicationList;
class FixedNetwork;
class TableView;
class ViewController;
}  // namespace platform

namespace bench {

// The whole app on a device folder, in a window that nobody sees, driven by events. Its animations take no time.
class App {
public:
    // Returns when the main screen is there.
    explicit App(const std::string& deviceFolder);
    ~App();

    DeviceFolder& device() { return folder_; }
    FrameClock& clock() { return clock_; }
    QWidget* window() const { return delegate_->window(); }
    platform::ViewController* screen() const;
    // The screen's table that lies on top.
    platform::TableView* table() const;
    // The screen's button of that name, or with that text.
    QAbstractButton* button(const QString& name) const;

    void tapRow(int section, int row);
    // Throws the table's rows up (-1) or down (1) with a finger.
    void flick(int direction);
    // Answers the alert on top.
    void answer(int button);

    // Opens the screen that follows and waits for it; no time is taken.
    void openDenyList();
    void openSettings();

    // Seconds from the event until the file has been replaced.
    double untilReplaced(const std::filesystem::path& file, const std::function<void()>& event);

private:
    DeviceFolder folder_;
    QApplication application_;
    FrameClock clock_;
    SilentNotifyCenter notifyCenter_;
    std::unique_ptr<platform::DesktopApplicationList> applications_;
    std::unique_ptr<platform::FixedNetwork> network_;
    platform::Device device_;
    std::unique_ptr<app::VxmAppDelegate> delegate_;
};

}  // namespace bench
