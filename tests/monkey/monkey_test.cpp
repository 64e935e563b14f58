// monkey_test [--seed NUMBER] [--events NUMBER]
// Lets the monkey at the app and tells what it has seen; see Monkey.h.
#include <sys/stat.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QHashFunctions>
#include <iostream>

#include "app/Run.h"
#include "monkey/Clock.h"
#include "monkey/Journal.h"
#include "monkey/Monkey.h"

namespace {

// All there are.
constexpr const char* everyScreen[] = {"VxmMainViewController",     "VxmAppChooserControllerViewController",
                                       "VxmAppViewController",      "VxmAppRulesViewController",
                                       "VxmGlobalViewController",   "VxmGlobalImportViewController",
                                       "VxmSettingsViewController", "VxmImportExportViewController",
                                       "VxmLogViewController",      "VxmWebViewController"};
constexpr long enoughForEveryScreen = 3000;  // events

void print(const char* what, const std::map<std::string, long>& counts) {
    std::cout << what << ":";
    for (const auto& [name, count] : counts) std::cout << " " << name << " " << count;
    std::cout << "\n";
}

}  // namespace

int main(int argc, char** argv) {
    QHashSeed::setDeterministicGlobalSeed();  // the order of a hash is part of what a seed leads back to
    app::prepare().join();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser parser;
    parser.addOptions({{QStringLiteral("seed"), {}, QStringLiteral("NUMBER"), QStringLiteral("1")},
                       {QStringLiteral("events"), {}, QStringLiteral("NUMBER"), QStringLiteral("4000")}});
    parser.process(application);
    const auto seed = parser.value(QStringLiteral("seed")).toULongLong();
    const long events = parser.value(QStringLiteral("events")).toLong();

    umask(022);
    monkey::Clock::stop();
    monkey::Monkey monkey(seed);
    monkey.run(events);

    std::cout << "seed " << seed << ", " << events << " events, " << monkey.launches() << " launches, digest "
              << monkey::Journal::digest() << ", 0 findings\n";
    print("visits", monkey.screens().visits());
    print("writes", monkey::ConfigurationWatch::writes());
    print("posts", monkey.posts());
    for (const char* screen : everyScreen)
        if (events >= enoughForEveryScreen && !monkey.screens().visits().contains(screen))
            monkey::Journal::fail(std::string(screen) + " was never seen");
    return 0;
}
