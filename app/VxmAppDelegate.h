#pragma once

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

// The life of the app: at launch the window with the navigation stack and the main screen in it, at termination the
// notification that makes the engine reread both rule files. Main thread only.
class VxmAppDelegate {
public:
    // `device` outlives the delegate.
    explicit VxmAppDelegate(const platform::Device& device);
    ~VxmAppDelegate();
    VxmAppDelegate(const VxmAppDelegate&) = delete;
    VxmAppDelegate& operator=(const VxmAppDelegate&) = delete;

    // Shows the window; called once, when the application object exists.
    void didFinishLaunching();

    // Called once, when the app ends in an orderly way. Writes no file.
    void applicationWillTerminate();

    // Whether "HelveticaNeue-CondensedBold" was there at launch.
    bool hasHelveticaNeue() const { return chrome_ && chrome_->hasHelveticaNeue(); }

    QWidget* window() const { return window_.get(); }
    platform::NavigationController* navigationController() const { return navigation_; }

private:
    const platform::Device& device_;
    store::ConfigurationStore store_;
    std::optional<views::Chrome> chrome_;
    catalog::IconThreads iconThreads_;  // waits, when the screens have gone
    std::unique_ptr<RouteTable> routes_;
    std::unique_ptr<QWidget> window_;
    std::optional<WriteWarning> writeWarning_;
    platform::NavigationController* navigation_ = nullptr;
};

}  // namespace app
