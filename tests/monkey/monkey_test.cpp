// monkey_test [--seed NUMBER] [--events NUMBER]
// Lets the monkey at the app and tells what it has seen.
#include <sys/stat.h>

#include <iostream>

#include "app/Run.h"
#include "monkey/Belongings.h"
#include "monkey/Bus.h"
#include "monkey/Clock.h"
#include "monkey/ConfigurationWatch.h"
#include "monkey/Eye.h"
#include "monkey/Fingers.h"
#include "monkey/Surroundings.h"
#include "platform/system/FixedNetwork.h"
#include "platform/system/SystemNotifyCenter.h"
#include "platform/ui/controls/Switch.h"
#include "platform/ui/motion/AnimationClock.h"
#include "screens/settings/VxmSettingsViewController.h"

using namespace monkey;

namespace {

constexpr std::size_t everyScreen = 10;
constexpr long enoughForEveryScreen = 3000;  // events

void print(const char* what, const std::map<std::string, long>& counts) {
    std::cout << what << ":";
    for (const auto& [name, count] : counts) std::cout << " " << name << " " << count;
    std::cout << "\n";
}

// Uses the whole app as nobody would: whatever a person, other programs and the system can do, in an order that the
// seed decides. After each event what must always hold is looked at; the first thing that does not ends the process.
class Monkey {
public:
    explicit Monkey(std::uint64_t seed) : random_(seed) {
        Journal::begin(seed);
        Journal::event(0);
        bus_.start();
        takeNewDevice();
        launch();
        pass(longEnough);
        terminate();
        atRest_ = Belongings::atRest({{""}, {}, {}});  // there is always more: all that can end has ended then
        launch();
    }

    void run(long events) {
        constexpr long settledEvery = 20;
        for (long number = 1; number <= events; ++number) {
            Journal::event(number);
            event();
            pass(anyWhile());
            if (number % settledEvery == 0) settle();
        }
        Journal::event(events);
        settle();
        terminate();

        std::cout << "seed " << Journal::seed << ", " << events << " events, " << launches_ << " launches, digest "
                  << Journal::digest << ", 0 findings\n";
        print("visits", screens_.visits());
        print("writes", ConfigurationWatch::writes);
        if (events >= enoughForEveryScreen && screens_.visits().size() < everyScreen)
            Journal::fail("not every screen was seen");
    }

private:
    static constexpr int longEnough = 1500;  // milliseconds until everything that moves has come to rest

    // Posts on the real bus.
    struct Posts : store::NotifyCenter {
        void post(std::string_view name) override {
            center.post(name);
            lately.emplace_back(name);
        }
        platform::SystemNotifyCenter center;
        std::vector<std::string> lately;
    };

    void event() {
        static constexpr Weighted<void (*)(Monkey&)> kinds[] = {
            {3, [](Monkey& monkey) { monkey.relaunch(); }},
            {7, [](Monkey& monkey) { monkey.changeNetwork(); }},
            {5, [](Monkey& monkey) { monkey.changeBus(); }},
            {55, [](Monkey& monkey) { monkey.changeSurroundings(); }},
            {20, [](Monkey& monkey) { monkey.pass(longEnough); }},
            {910, [](Monkey& monkey) { monkey.fingers_.act(); }},
        };
        random_.weighted(kinds)(*this);
    }

    void changeNetwork() {
        const bool isThere = device_->device().network == &wifi_;
        device_->device().network = isThere ? &noNetwork_ : &wifi_;
        Journal::note(isThere ? "no network" : "a network");
    }

    void changeBus() {
        Journal::note(bus_.isRunning() ? "kill the bus" : "start the bus");
        bus_.isRunning() ? bus_.kill() : bus_.start();
    }

    void changeSurroundings() {
        Journal::note(surroundings_->change());
        watch_->accept();
    }

    void relaunch() {
        const bool isNew = random_.chance(30);
        Journal::note(isNew ? "launch on a new device" : "launch again");
        terminate();
        if (isNew) takeNewDevice();
        launch();
    }

    void takeNewDevice() {
        static constexpr QSize screens[] = {{320, 568}, {320, 480}, {375, 667}, {768, 1024}};
        device_.emplace(random_.chance(80) ? QStringLiteral("iPhone") : QStringLiteral("iPad"), random_.oneOf(screens));
        platform::AnimationClock::setInstant(false);
        device_->device().notifyCenter = &posts_;
        device_->device().network = &wifi_;
        surroundings_.emplace(*device_, random_);
        watch_.emplace(device_->files(), [this](std::string_view app) { return surroundings_->isInstalled(app); });
    }

    void launch() {
        ++launches_;
        device_->launch();
        isRunning_ = true;
        fingers_.use(device_->window());
        turn();
    }

    // As the window being closed and SIGTERM do it. With the app everything goes that it had made, and when its end is
    // posted nothing is left to be written.
    void terminate() {
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
        checkScreens(0);
        if (launches_ <= 1) return;
        checkBelongings("without the app", atRest_);
    }

    void pass(int milliseconds) {
        turn();
        while (milliseconds > 0) {
            const int frame = std::min(milliseconds, random_.between(1, 100));
            Clock::advance(frame);
            milliseconds -= frame;
            turn();
        }
    }

    // Mostly less than a motion takes.
    int anyWhile() {
        const int drawn = random_.below(100);
        return drawn < 50 ? 0 : drawn < 85 ? random_.below(120) : random_.below(500);
    }

    void turn() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!isRunning_) return;
        screens_.look(*device_->navigation());
        const Sights seen = screens_.seenLately();
        if (const std::string finding = watch_->check(seen); !finding.empty()) Journal::fail(finding);
        for (const std::string& post : posts_.lately)
            if (!wasSeen(seen, post == store::hookLate ? "VxmAppViewController" : "VxmSettingsViewController"))
                Journal::fail(post + " was posted");
        posts_.lately.clear();
    }

    void settle() {
        fingers_.letGo();
        pass(longEnough);
        checkScreens(Screens::held(*device_->navigation()));
        rest();
        if (isFirewallSwitchedByOthers()) return;
        const std::string finding = Eye(*device_->screen()).look([this] { rest(); });
        if (!finding.empty()) Journal::fail(finding);
    }

    void checkScreens(std::size_t held) const {
        const std::vector<std::string> alive = screens_.alive();
        if (alive.size() == held) return;
        std::string finding = std::to_string(held) + " screens are held, and alive are";
        for (const std::string& screen : alive) finding += " " + screen;
        Journal::fail(finding);
    }

    static void checkBelongings(const std::string& when, const Belongings& expected) {
        const Belongings held = Belongings::atRest(expected);
        if (held != expected) Journal::fail(when + " there should be" + expected.text() + ", and are" + held.text());
    }

    // The one thing in a row that is not told to the screen but read whenever the row is built.
    bool isFirewallSwitchedByOthers() const {
        if (!qobject_cast<screens::VxmSettingsViewController*>(device_->screen())) return false;
        bool isOther = false;
        device_->table()->forEachCell([&](auto, const platform::TableViewCell& row) {
            if (row.accessibleName() == u"Enabled")
                isOther = row.accessorySwitch()->isOn() == device_->files().isDisabled();
        });
        return isOther;
    }

    // Until everything has ended that needs no time of the monkey's.
    void rest() {
        turn();
        checkBelongings("at rest", {atRest_.threads, atRest_.descriptors, Belongings::now().widgets});
        for (int turns = 0; turns < 3; ++turns) turn();  // an icon comes in one, is painted in the next
    }

    Random random_;
    QTemporaryDir folder_;
    Bus bus_{folder_.path().toStdString()};
    Posts posts_;
    platform::FixedNetwork noNetwork_{platform::FixedNetwork::Kind::none};
    platform::FixedNetwork wifi_{platform::FixedNetwork::Kind::wifi};
    std::optional<TestDevice> device_;
    std::optional<Surroundings> surroundings_;
    std::optional<ConfigurationWatch> watch_;
    Screens screens_;
    Fingers fingers_{random_, [this](int milliseconds) { pass(milliseconds); }};
    Belongings atRest_;
    bool isRunning_ = false;
    long launches_ = 0;
};

}  // namespace

int main(int argc, char** argv) try {
    QHashSeed::setDeterministicGlobalSeed();  // the order of a hash is part of what a seed leads back to
    app::prepare().join();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser parser;
    parser.addOptions({{u"seed"_s, {}, u"NUMBER"_s, u"1"_s}, {u"events"_s, {}, u"NUMBER"_s, u"4000"_s}});
    parser.process(application);

    umask(022);
    Clock::advance(0);
    Monkey monkey(parser.value(u"seed"_s).toULongLong());
    monkey.run(parser.value(u"events"_s).toLong());
} catch (const std::exception& problem) {
    Journal::fail(problem.what());
}
