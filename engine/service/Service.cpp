#include "engine/service/Service.h"

#include <malloc.h>
#include <sys/epoll.h>
#include <sys/inotify.h>
#include <systemd/sd-bus.h>
#include <systemd/sd-daemon.h>
#include <systemd/sd-event.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/ConfigurationFiles.h"
#include "engine/daemon/DaemonInterface.h"
#include "engine/programs/Programs.h"
#include "engine/service/ConnectionLog.h"
#include "engine/service/DaemonConfiguration.h"
#include "engine/service/NetworkWatch.h"
#include "engine/service/RuleDirectory.h"
#include "engine/translation/Translation.h"
#include "platform/desktop/DataDirectories.h"
#include "store/Schema.h"
#include "store/SharedFiles.h"

namespace engine {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t second = 1000000;             // sd-event counts in microseconds
constexpr std::uint64_t settling = second / 50;       // changes so close together are read once
constexpr std::uint64_t searchInterval = 5 * second;  // for what is missing
constexpr std::uint64_t accuracy = second / 100;

struct Release {
    void operator()(sd_event* event) const { sd_event_unref(event); }
    void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
template <typename Type>
using Owned = std::unique_ptr<Type, Release>;

void complain(std::string_view what, const std::string& why) {
    std::cerr << "vexmor-engine: " << what << ": " << why << std::endl;
}

class Service {
public:
    explicit Service(const Places& places)
        : places_(places),
          directory_(places.rules, places.state),
          log_(places.device),
          watched_(foldersToWatch(places)) {
        using store::File;
        for (const File file : {File::appRules, File::globalRules})
            sharedNames_.insert(store::pathOf(file, places.device).filename());
        sharedNames_.insert(store::disabledMarker(places.device).filename());
    }

    int run();

private:
    static std::vector<fs::path> foldersToWatch(const Places& places);

    bool prepare();
    void search();
    void watchFolders();
    void listenToBus();

    static void arm(const Owned<sd_event_source>& timer, std::uint64_t delay) {
        sd_event_source_set_time_relative(timer.get(), delay);
        sd_event_source_set_enabled(timer.get(), SD_EVENT_ONESHOT);
    }
    void readSoon() { arm(reading_, settling); }
    void read();
    std::vector<DaemonRule> rulesNow();
    void step();
    bool matters(const fs::path& folder, const inotify_event& change) const;
    void changed(sd_event_source* source, const inotify_event& change);
    void listenToDaemon();
    void writeLog();

    // Problems by what has them, each said once for as long as it lasts.
    using Problems = std::map<std::string, std::string>;
    static void tell(Problems now, Problems& before);

    Owned<sd_event_source> addTimer(sd_event_time_handler_t handler);
    static Service& of(void* self) { return *static_cast<Service*>(self); }

    Places places_;
    RuleDirectory directory_;
    ConnectionLog log_;
    NetworkWatch network_;
    bool isOnWiFi_ = true;
    bool isReady_ = false;
    Problems unknown_, unreadable_, unheard_, unlogged_;  // as told last

    std::set<std::string> sharedNames_;
    std::vector<fs::path> watched_;
    Owned<sd_event> event_;
    std::map<fs::path, Owned<sd_event_source>> watches_;
    Owned<sd_event_source> reading_, stepping_, searching_;
    Owned<sd_bus> bus_;
};

// Of the shared files, of the desktop entries, and of the daemon's rules.
std::vector<fs::path> Service::foldersToWatch(const Places& places) {
    std::vector<fs::path> folders{store::preferencesFolder(places.device), places.rules};
    for (const fs::path& data : platform::sharedDataDirectories(places.device))
        folders.push_back(data / "applications");
    return folders;
}

Owned<sd_event_source> Service::addTimer(sd_event_time_handler_t handler) {
    sd_event_source* timer = nullptr;
    sd_event_add_time_relative(event_.get(), &timer, CLOCK_MONOTONIC, 0, accuracy, handler, this);
    if (timer) sd_event_source_set_enabled(timer, SD_EVENT_OFF);
    return Owned<sd_event_source>(timer);
}

bool Service::prepare() {
    sd_event* event = nullptr;
    const auto has = [](int result) { return result >= 0; };
    // The signals are blocked first: a source takes those that would otherwise end the process.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGTERM);
    sigaddset(&ending, SIGINT);
    sigprocmask(SIG_BLOCK, &ending, nullptr);
    if (!has(sd_event_new(&event))) return false;
    event_.reset(event);
    if (!has(sd_event_add_signal(event, nullptr, SIGTERM, nullptr, nullptr))) return false;
    if (!has(sd_event_add_signal(event, nullptr, SIGINT, nullptr, nullptr))) return false;
    sd_event_set_watchdog(event, true);

    reading_ = addTimer([](sd_event_source*, std::uint64_t, void* self) { return of(self).read(), 0; });
    stepping_ = addTimer([](sd_event_source*, std::uint64_t, void* self) { return of(self).step(), 0; });
    searching_ = addTimer([](sd_event_source*, std::uint64_t, void* self) { return of(self).search(), 0; });
    const auto networkChanged = [](sd_event_source*, int, std::uint32_t, void* self) {
        of(self).network_.drain();
        if (isOnWiFi() != of(self).isOnWiFi_) of(self).readSoon();
        return 0;
    };
    if (network_.descriptor() >= 0)
        sd_event_add_io(event, nullptr, network_.descriptor(), EPOLLIN, networkChanged, this);
    const auto reported = [](sd_event_source*, int, std::uint32_t, void* self) { return of(self).writeLog(), 0; };
    if (log_.descriptor() >= 0) sd_event_add_io(event, nullptr, log_.descriptor(), EPOLLIN, reported, this);
    return reading_ && stepping_ && searching_;
}

// Looks for what was missing the last time.
void Service::search() {
    watchFolders();
    if (!bus_) listenToBus();
    if (!log_.isListening()) listenToDaemon();
    arm(searching_, searchInterval);
}

void Service::watchFolders() {
    const auto changed = [](sd_event_source* source, const inotify_event* change, void* self) {
        return of(self).changed(source, *change), 0;
    };
    for (const fs::path& folder : watched_) {
        if (watches_.contains(folder)) continue;
        sd_event_source* watch = nullptr;
        const std::uint32_t changes = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE |
                                      IN_MOVE_SELF | IN_DELETE_SELF | IN_ONLYDIR;
        if (sd_event_add_inotify(event_.get(), &watch, folder.c_str(), changes, changed, this) < 0) continue;
        watches_.emplace(folder, watch);
        readSoon();  // it may have come, with files, since it was missing
    }
}

// Beside the shared files lie others, and the log that grows with each connection; of the daemon's rules those that
// this service writes itself.
bool Service::matters(const fs::path& folder, const inotify_event& change) const {
    if (folder == store::preferencesFolder(places_.device)) return sharedNames_.contains(change.name);
    if (folder == places_.rules) return (change.mask & (IN_DELETE | IN_MOVED_FROM)) && directory_.wants(change.name);
    return true;
}

void Service::changed(sd_event_source* source, const inotify_event& change) {
    const auto watch = std::ranges::find_if(watches_, [&](const auto& one) { return one.second.get() == source; });
    if (change.len > 0 && !matters(watch->first, change)) return;
    if (change.mask & (IN_IGNORED | IN_MOVE_SELF | IN_DELETE_SELF)) watches_.erase(watch);
    readSoon();
}

void Service::listenToBus() {
    const auto notified = [](sd_bus_message*, void* self, sd_bus_error*) { return of(self).readSoon(), 0; };
    const auto disconnected = [](sd_bus_message*, void* self, sd_bus_error*) {
        sd_bus_detach_event(of(self).bus_.get());
        of(self).bus_.reset();
        return 0;
    };
    sd_bus* bus = nullptr;
    if (sd_bus_open_system(&bus) < 0) return;
    Owned<sd_bus> owned(bus);
    const bool listens =
        sd_bus_match_signal(bus, nullptr, nullptr, "/com/urmeld/vxm", "com.urmeld.vxm", nullptr, notified, this) >= 0 &&
        sd_bus_match_signal(bus, nullptr, "org.freedesktop.DBus.Local", nullptr, "org.freedesktop.DBus.Local",
                            "Disconnected", disconnected, this) >= 0 &&
        sd_bus_attach_event(bus, event_.get(), SD_EVENT_PRIORITY_NORMAL) >= 0;
    if (listens) bus_ = std::move(owned);
}

void Service::listenToDaemon() {
    std::error_code ignored;
    const fs::path socket = DaemonInterface::pathOf(places_.interface);
    if (!socket.empty()) fs::create_directory(socket.parent_path(), ignored);
    std::string failure;
    Problems problems;
    if (!log_.listen(places_.interface, failure)) problems[places_.interface] = failure;
    tell(std::move(problems), unheard_);
}

void Service::writeLog() {
    Problems problems;
    if (const std::error_code failed = log_.write()) problems["cannot write the log"] = failed.message();
    tell(std::move(problems), unlogged_);
}

void Service::read() {
    // First: a million hosts take as much memory as their file, and what is freed is in small pieces.
    directory_.abandon();
    malloc_trim(0);
    directory_.bringTo(rulesNow());
    step();
}

// The configuration has gone when it returns: it may be as large as the rules that step() makes of it.
std::vector<DaemonRule> Service::rulesNow() {
    Problems unreadable;
    const Configuration configuration = readConfiguration(places_.device, unreadable);
    tell(std::move(unreadable), unreadable_);
    isOnWiFi_ = isOnWiFi();
    std::vector<std::string> apps;
    for (const auto& [app, record] : configuration.appRules)
        if (app != store::keys::marker) apps.emplace_back(app);
    const Programs programs = findPrograms(apps, places_.device);
    Problems unknown;
    for (const auto& [app, why] : programs.unknown) unknown.emplace(app + " is left alone", why);
    tell(std::move(unknown), unknown_);
    log_.update(programs, store::boolValue(configuration.globalRules, store::keys::log));
    return translate(configuration, programs.known, isOnWiFi_);
}

void Service::tell(Problems now, Problems& before) {
    for (const auto& [what, why] : now)
        if (const auto told = before.find(what); told == before.end() || told->second != why) complain(what, why);
    before = std::move(now);
}

void Service::step() {
    std::error_code failure;
    const auto due = directory_.step(failure);
    if (failure) {
        complain("cannot change " + places_.rules.string(), failure.message());
        if (!isReady_) {
            sd_event_exit(event_.get(), 1);
            return;
        }
        arm(reading_, searchInterval);
        return;
    }
    if (!isReady_) sd_notify(0, "READY=1");
    isReady_ = true;
    sd_event_source_set_enabled(stepping_.get(), SD_EVENT_OFF);
    if (due) arm(stepping_, static_cast<std::uint64_t>(due->count()) * 1000);
}

int Service::run() {
    std::error_code failure;
    fs::create_directories(places_.state, failure);
    if (failure) return complain("cannot use " + places_.state.string(), failure.message()), 1;
    if (!fs::is_directory(places_.rules, failure))
        return complain("cannot use " + places_.rules.string(), std::strerror(failure ? failure.value() : ENOTDIR)), 1;
    if (!prepare()) return complain("cannot start", std::strerror(errno)), 1;
    for (const std::string& complaint : complaintsAbout(places_.daemonConfiguration, places_.rules))
        complain(places_.daemonConfiguration.string(), complaint);
    search();
    readSoon();
    const int status = sd_event_loop(event_.get());
    sd_notify(0, "STOPPING=1");
    return status < 0 ? 1 : status;
}

}  // namespace

int runService(const Places& places) {
    return Service(places).run();
}

}  // namespace engine
