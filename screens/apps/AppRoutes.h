#pragma once

class QString;

namespace platform {
class ViewController;
}

namespace screens {

class VxmMainViewController;

// The ways from the app screens to others. A screen asks; the app, which knows all screens, builds the one asked for
// and pushes or presents it over the one that asks.
class AppRoutes {
public:
    AppRoutes() = default;
    virtual ~AppRoutes() = default;
    AppRoutes(const AppRoutes&) = delete;
    AppRoutes& operator=(const AppRoutes&) = delete;

    virtual void openGlobalRules(platform::ViewController& from, bool isDeny) = 0;
    virtual void openApp(platform::ViewController& from, const QString& bundleIdentifier,
                         const QString& displayName) = 0;
    virtual void openAppChooser(VxmMainViewController& from) = 0;
    virtual void openSettings(platform::ViewController& from) = 0;
    virtual void openAppRules(platform::ViewController& from, bool isDeny, const QString& bundleIdentifier,
                              const QString& displayName) = 0;
};

}  // namespace screens
