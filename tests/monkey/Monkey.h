#pragma once

#include <QTemporaryDir>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "monkey/Belongings.h"
#include "monkey/Bus.h"
#include "monkey/ConfigurationWatch.h"
#include "monkey/Fingers.h"
#include "monkey/Random.h"
#include "monkey/Screens.h"
#include "monkey/Surroundings.h"
#include "platform/system/FixedNetwork.h"
#include "platform/system/SystemNotifyCenter.h"
#include "store/NotifyCenter.h"
#include "support/TestDevice.h"

namespace monkey {

// Uses the whole app as nobody would: whatever a person, other programs and the system can do, in an order that the
// seed decides. After each event what must always hold is looked at; the first thing that does not ends the process.
class Monkey {
public:
    explicit Monkey(std::uint64_t seed);

    void run(long events);

    const Screens& screens() const { return screens_; }
    const std::map<std::string, long>& posts() const { return posts_.counts; }
    long launches() const { return launches_; }

private:
    // Posts on the real bus and keeps the count.
    struct Posts : store::NotifyCenter {
        void post(std::string_view name) override;
        platform::SystemNotifyCenter center;
        std::map<std::string, long> counts;
        std::vector<std::string> lately;
    };

    void event();
    std::string changeNetwork();
    std::string changeBus();
    std::string relaunch();
    void takeNewDevice();
    void launch();
    void terminate();
    void pass(int milliseconds);
    int anyWhile();
    void turn();
    void check();
    void checkPosts(const std::vector<Sight>& seen);
    void settle();
    bool isFirewallSwitchedByOthers() const;
    void rest();

    Random random_;
    QTemporaryDir folder_;
    Bus bus_;
    Posts posts_;
    platform::FixedNetwork noNetwork_{platform::FixedNetwork::Kind::none};
    platform::FixedNetwork wifi_{platform::FixedNetwork::Kind::wifi};
    std::optional<TestDevice> device_;
    std::optional<Surroundings> surroundings_;
    std::optional<ConfigurationWatch> watch_;
    Screens screens_;
    Fingers fingers_;
    Belongings atRest_;
    bool isRunning_ = false;
    long launches_ = 0;
};

}  // namespace monkey
