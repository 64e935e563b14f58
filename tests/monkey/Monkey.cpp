#include "monkey/Monkey.h"

#include <QCoreApplication>
#include <algorithm>
#include <iostream>

#include "monkey/Clock.h"
#include "monkey/Eye.h"
#include "monkey/Journal.h"
#include "platform/ui/controls/Switch.h"
#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"
#include "screens/settings/VxmSettingsViewController.h"

namespace monkey {

namespace {

constexpr int longestFrame = 100;   // milliseconds
constexpr int longEnough = 1500;    // until everything that moves has come to rest
constexpr long settledEvery = 20;   // events
constexpr long toldEvery = 10'000;  // events

constexpr QSize someScreens[] = {{320, 568}, {320, 480}, {375, 667}, {768, 1024}};

}  // namespace

void Monkey::Posts::post(std::string_view name) {
    center.post(name);
    ++counts[std::string(name)];
    lately.emplace_back(name);
}

Monkey::Monkey(std::uint64_t seed)
    : random_(seed),
      bus_(folder_.path().toStdString()),
      fingers_(random_, [this](int milliseconds) { pass(milliseconds); }) {
    Journal::begin(seed);
    Journal::event(0);
    bus_.start();
    takeNewDevice();
    launch();
    pass(longEnough);
    terminate();
    atRest_ = Belongings::atRest({1, 0, 0});  // there is always more: all that can end has ended then
    launch();
}

void Monkey::run(long events) {
    for (long number = 1; number <= events; ++number) {
        Journal::event(number);
        event();
        pass(anyWhile());
        if (number % settledEvery == 0) settle();
        if (number % toldEvery == 0) std::cout << number << " events" << std::endl;
    }
    Journal::event(events);
    settle();
    terminate();
    std::filesystem::remove_all(device_->device().root);
}

void Monkey::event() {
    const int drawn = random_.below(1000);
    if (drawn < 3) {
        Journal::note(relaunch());
    } else if (drawn < 10) {
        Journal::note(changeNetwork());
    } else if (drawn < 15) {
        Journal::note(changeBus());
    } else if (drawn < 70) {
        Journal::note(surroundings_->change());
        watch_->accept();
    } else if (drawn < 90) {
        Journal::note("wait");
        pass(longEnough);
    } else {
        fingers_.act();
    }
}

std::string Monkey::changeNetwork() {
    const bool isThere = device_->device().network == &wifi_;
    device_->device().network = isThere ? &noNetwork_ : &wifi_;
    return isThere ? "no network" : "a network";
}

std::string Monkey::changeBus() {
    if (bus_.isRunning()) {
        bus_.kill();
        return "kill the bus";
    }
    bus_.start();
    return "start the bus";
}

std::string Monkey::relaunch() {
    const bool isNew = random_.chance(30);
    terminate();
    if (isNew) takeNewDevice();
    launch();
    return isNew ? "launch on a new device" : "launch again";
}

void Monkey::takeNewDevice() {
    watch_.reset();
    surroundings_.reset();
    // By hand: Qt's temporary directory leaves behind what has no name in Unicode.
    if (device_) std::filesystem::remove_all(device_->device().root);
    device_.emplace(random_.chance(80) ? QStringLiteral("iPhone") : QStringLiteral("iPad"), random_.oneOf(someScreens));
    platform::AnimationClock::setInstant(false);
    device_->device().notifyCenter = &posts_;
    device_->device().network = &wifi_;
    surroundings_.emplace(*device_, random_);
    watch_.emplace(device_->files(),
                   [this](std::string_view identifier) { return surroundings_->isInstalled(identifier); });
}

void Monkey::launch() {
    ++launches_;
    device_->launch();
    isRunning_ = true;
    fingers_.use(device_->window());
    turn();
}

// As the window being closed and SIGTERM do it. With the app everything goes that it had made, and when its end is
// posted nothing is left to be written.
void Monkey::terminate() {
    fingers_.letGo();
    device_->window()->close();
    turn();
    isRunning_ = false;
    device_->terminate();
    turn();
    if (posts_.lately != std::vector<std::string>{std::string(store::reloadBoth)})
        Journal::fail("the end of the app was not posted once");
    posts_.lately.clear();
    screens_.seenLately();
    if (const std::string finding = watch_->check({}); !finding.empty()) Journal::fail("after the end " + finding);
    if (screens_.alive() > 0) Journal::fail("without the app there are still" + screens_.namesOfTheLiving());
    if (launches_ <= 1) return;
    const Belongings held = Belongings::atRest(atRest_);
    if (held != atRest_)
        Journal::fail("without the app there were " + atRest_.text() + ", and now there are " + held.text() + ": " +
                      Belongings::listed());
}

void Monkey::pass(int milliseconds) {
    turn();
    while (milliseconds > 0) {
        const int frame = std::min(milliseconds, random_.between(1, longestFrame));
        Clock::advance(frame);
        milliseconds -= frame;
        turn();
    }
}

// Mostly less than a motion takes.
int Monkey::anyWhile() {
    const int drawn = random_.below(100);
    return drawn < 50 ? 0 : drawn < 85 ? random_.below(120) : random_.below(500);
}

void Monkey::turn() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!isRunning_) return;
    screens_.look(*device_->navigation());
    check();
}

void Monkey::check() {
    const std::vector<Sight> seen = screens_.seenLately();
    if (const std::string finding = watch_->check(seen); !finding.empty()) Journal::fail(finding);
    checkPosts(seen);
}

void Monkey::checkPosts(const std::vector<Sight>& seen) {
    for (const std::string& post : posts_.lately) {
        const char* by = post == store::hookLate ? "VxmAppViewController" : "VxmSettingsViewController";
        if (std::none_of(seen.begin(), seen.end(), [&](const Sight& sight) { return sight.screen == by; }))
            Journal::fail(post + " was posted");
    }
    posts_.lately.clear();
}

void Monkey::settle() {
    fingers_.letGo();
    pass(longEnough);
    const long held = Screens::held(*device_->navigation());
    if (screens_.alive() != held)
        Journal::fail("of the screens " + std::to_string(held) + " are held, and alive are" +
                      screens_.namesOfTheLiving());
    rest();
    if (isFirewallSwitchedByOthers()) return;
    if (const std::string finding = Eye::lookAt(*device_->screen(), [this] { rest(); }); !finding.empty())
        Journal::fail(finding);
}

// The one thing in a row that is not told to the screen but read whenever the row is built.
bool Monkey::isFirewallSwitchedByOthers() const {
    if (!qobject_cast<screens::VxmSettingsViewController*>(device_->screen())) return false;
    bool isOther = false;
    device_->table()->forEachCell([&](platform::IndexPath, const platform::TableViewCell& row) {
        if (row.accessibleName() == u"Enabled")
            isOther = row.accessorySwitch()->isOn() == device_->files().isDisabled();
    });
    return isOther;
}

// Until everything has ended that needs no time of the monkey's.
void Monkey::rest() {
    turn();
    Belongings expected = Belongings::now();
    expected.threads = atRest_.threads;
    expected.descriptors = atRest_.descriptors;
    const Belongings now = Belongings::atRest(expected);
    if (now != expected)
        Journal::fail("at rest there should be " + expected.text() + " and are " + now.text() + ": " +
                      Belongings::listed());
    for (int turns = 0; turns < 3; ++turns) turn();  // an icon comes in one, is painted in the next
}

}  // namespace monkey
