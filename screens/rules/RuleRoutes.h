#pragma once

namespace platform {
class ViewController;
}

namespace screens {

// The ways from the rule screens to others: asked for by a screen, gone by the app.
class RuleRoutes {
public:
    RuleRoutes() = default;
    virtual ~RuleRoutes() = default;
    RuleRoutes(const RuleRoutes&) = delete;
    RuleRoutes& operator=(const RuleRoutes&) = delete;

    virtual void openHostListImport(platform::ViewController& from, bool isDeny) = 0;
};

}  // namespace screens
