#pragma once

#include <QByteArray>
#include <QWidget>
#include <memory>
#include <optional>

#include "app/WriteWarning.h"
#include "catalog/IconThreads.h"
#include "store/ConfigurationStore.h"
#include "views/Chrome.h"

namespace platform {
struct Device;
class NavigationController;
}  // namespace platform

namespace app {

class RouteTable;

// The lifecycle of the app: at launch it creates the window with the navigation stack and the main screen, at
// termination it posts the notification that makes the engine reread both rule files. Main thread only.
class VxmAppDelegate {
public:
    // `device` outlives the delegate.
    explicit VxmAppDelegate(const platform::Device& device);
    ~VxmAppDelegate();
    VxmAppDelegate(const VxmAppDelegate&) = delete;
    VxmAppDelegate& operator=(const VxmAppDelegate&) = delete;

    // Shows the window. Call once, after the application object has been created.
    void didFinishLaunching();

    // Shows the window above others and gives it the keyboard, restored if it was minimized. Call after
    // didFinishLaunching(). `activationToken` is what a Wayland compositor demands for that; empty elsewhere.
    void bringToFront(const QByteArray& activationToken);

    // Call once, at an orderly end of the app. Writes no file.
    void applicationWillTerminate();

    // Whether "HelveticaNeue-CondensedBold" was installed at launch.
    bool hasHelveticaNeue() const { return chrome_ && chrome_->hasHelveticaNeue(); }

    QWidget* window() const { return window_.get(); }
    platform::NavigationController* navigationController() const { return navigation_; }

private:
    const platform::Device& device_;
    store::ConfigurationStore store_;
    std::optional<views::Chrome> chrome_;
    catalog::IconThreads iconThreads_;  // joins its threads after the screens are destroyed
    std::unique_ptr<RouteTable> routes_;
    std::unique_ptr<QWidget> window_;
    std::optional<WriteWarning> writeWarning_;
    platform::NavigationController* navigation_ = nullptr;
};

}  // namespace app
