#pragma once

#include <QtWidgets>
#include <algorithm>
#include <map>

#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/navigation/ViewController.h"
#include "screens/apps/VxmAppViewController.h"
#include "screens/rules/VxmAppRulesViewController.h"
#include "screens/settings/VxmGlobalImportViewController.h"

namespace monkey {

// A screen as far as it matters to the files: which one, and whose list or record it shows.
struct Sight {
    std::string screen;  // its class
    std::string bundleIdentifier;
    bool isDeny = false;

    explicit Sight(const platform::ViewController& seen) : screen(seen.metaObject()->className()) {
        screen.erase(0, screen.rfind(':') + 1);
        if (auto* rules = qobject_cast<const screens::RuleListScreen*>(&seen)) isDeny = rules->isDeny();
        if (auto* rules = qobject_cast<const screens::VxmAppRulesViewController*>(&seen))
            bundleIdentifier = rules->bundleID().toStdString();
        if (auto* import = qobject_cast<const screens::VxmGlobalImportViewController*>(&seen))
            isDeny = import->isDeny();
        if (auto* app = qobject_cast<const screens::VxmAppViewController*>(&seen))
            bundleIdentifier = app->bundleID().toStdString();
    }
    bool operator==(const Sight&) const = default;
};

using Sights = std::vector<Sight>;

inline bool wasSeen(const Sights& seen, std::string_view screen) {
    return std::any_of(seen.begin(), seen.end(), [&](const Sight& sight) { return sight.screen == screen; });
}

// Keeps an eye on the screens that come and go.
class Screens {
public:
    // To be called whenever another screen may have come.
    void look(const platform::NavigationController& navigation) {
        platform::ViewController* visible = navigation.visibleViewController();
        const Sight sight(*visible);
        if (std::find(seen_.begin(), seen_.end(), sight) == seen_.end()) seen_.push_back(sight);
        if (visible == visible_) return;
        visible_ = visible;
        ++visits_[sight.screen];
        std::erase_if(known_, [](const auto& screen) { return !screen; });
        if (std::find(known_.begin(), known_.end(), visible) == known_.end()) known_.emplace_back(visible);
    }

    // Who has been seen since the last call; who is seen now among them.
    Sights seenLately() { return std::exchange(seen_, visible_ ? Sights{Sight(*visible_)} : Sights()); }

    // The screens of all that were ever seen that still exist.
    std::vector<std::string> alive() const {
        std::vector<std::string> names;
        for (const auto& screen : known_)
            if (screen) names.push_back(Sight(*screen).screen);
        return names;
    }

    // How many the stack holds.
    static std::size_t held(const platform::NavigationController& navigation) {
        std::size_t count = std::size_t(navigation.count());
        const platform::ViewController* screen = navigation.topViewController();
        while ((screen = screen->presentedViewController())) ++count;
        return count;
    }

    const std::map<std::string, long>& visits() const { return visits_; }

private:
    QPointer<platform::ViewController> visible_;
    std::vector<QPointer<platform::ViewController>> known_;
    Sights seen_;
    std::map<std::string, long> visits_;
};

}  // namespace monkey
