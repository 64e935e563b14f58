#include "monkey/Screens.h"

#include <algorithm>
#include <utility>

#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/navigation/ViewController.h"
#include "screens/apps/VxmAppViewController.h"
#include "screens/rules/VxmAppRulesViewController.h"
#include "screens/settings/VxmGlobalImportViewController.h"

namespace monkey {

namespace {

Sight sightOf(const platform::ViewController& screen) {
    Sight sight{std::string(screen.metaObject()->className()), "", false};
    sight.screen.erase(0, sight.screen.rfind(':') + 1);
    if (auto* rules = qobject_cast<const screens::RuleListScreen*>(&screen)) sight.isDeny = rules->isDeny();
    if (auto* rules = qobject_cast<const screens::VxmAppRulesViewController*>(&screen))
        sight.bundleIdentifier = rules->bundleID().toStdString();
    if (auto* import = qobject_cast<const screens::VxmGlobalImportViewController*>(&screen))
        sight.isDeny = import->isDeny();
    if (auto* app = qobject_cast<const screens::VxmAppViewController*>(&screen))
        sight.bundleIdentifier = app->bundleID().toStdString();
    return sight;
}

}  // namespace

void Screens::look(const platform::NavigationController& navigation) {
    platform::ViewController* visible = navigation.visibleViewController();
    const Sight sight = sightOf(*visible);
    if (std::find(seen_.begin(), seen_.end(), sight) == seen_.end()) seen_.push_back(sight);
    if (visible == visible_) return;
    visible_ = visible;
    ++visits_[sight.screen];
    std::erase_if(known_, [](const auto& screen) { return !screen; });
    if (std::find(known_.begin(), known_.end(), visible) == known_.end()) known_.emplace_back(visible);
}

std::vector<Sight> Screens::seenLately() {
    std::vector<Sight> now;
    if (visible_) now.push_back(sightOf(*visible_));
    return std::exchange(seen_, now);
}

long Screens::alive() const {
    return std::count_if(known_.begin(), known_.end(), [](const auto& screen) { return !screen.isNull(); });
}

long Screens::held(const platform::NavigationController& navigation) {
    long count = navigation.count();
    const platform::ViewController* screen = navigation.topViewController();
    while ((screen = screen->presentedViewController())) ++count;
    return count;
}

std::string Screens::namesOfTheLiving() const {
    std::string names;
    for (const auto& screen : known_)
        if (screen) names += " " + sightOf(*screen).screen;
    return names;
}

}  // namespace monkey
