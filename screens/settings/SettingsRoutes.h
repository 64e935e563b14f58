#pragma once

namespace platform {
class ViewController;
}

namespace screens {

// The ways from the settings screen to others: asked for by the screen, gone by the app.
class SettingsRoutes {
public:
    SettingsRoutes() = default;
    virtual ~SettingsRoutes() = default;
    SettingsRoutes(const SettingsRoutes&) = delete;
    SettingsRoutes& operator=(const SettingsRoutes&) = delete;

    virtual void openDocumentation(platform::ViewController& from) = 0;
    virtual void openLog(platform::ViewController& from) = 0;
    virtual void openImportExport(platform::ViewController& from) = 0;
};

}  // namespace screens
