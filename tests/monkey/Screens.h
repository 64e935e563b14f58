#pragma once

#include <QPointer>
#include <map>
#include <string>
#include <vector>

namespace platform {
class NavigationController;
class ViewController;
}  // namespace platform

namespace monkey {

// A screen as far as it matters to the files: which one, and whose list or record it shows.
struct Sight {
    std::string screen;  // its class
    std::string bundleIdentifier;
    bool isDeny = false;

    bool operator==(const Sight&) const = default;
};

// Keeps an eye on the screens that come and go.
class Screens {
public:
    // To be called whenever another screen may have come.
    void look(const platform::NavigationController& navigation);
    // Who has been seen since the last call; who is seen now among them.
    std::vector<Sight> seenLately();

    // How many screens of all that were ever seen still exist, and how many the stack holds.
    long alive() const;
    static long held(const platform::NavigationController& navigation);
    std::string namesOfTheLiving() const;

    const std::map<std::string, long>& visits() const { return visits_; }

private:
    QPointer<platform::ViewController> visible_;
    std::vector<QPointer<platform::ViewController>> known_;
    std::vector<Sight> seen_;
    std::map<std::string, long> visits_;
};

}  // namespace monkey
