#pragma once

#include <filesystem>
#include <string>

namespace engine {

// The engine as a service: keeps a firewall daemon's rules as the shared files say, until SIGTERM or SIGINT, which
// leave the rules standing.
//
// The files are read at start, when one of them changes (inotify), when a notification comes (D-Bus, system bus), when
// the network changes between cellular and not, and when apps are installed or removed. Neither bus nor folder need be
// there: what is missing is looked for again every 5 s. While the log is on, what the daemon reports goes there.
// systemd is told when the first rules stand, and its watchdog is kept from biting (sd_notify(3)).

struct Places {
    std::filesystem::path device = "/";                      // below which the shared files and the apps are
    std::filesystem::path rules = "/etc/opensnitchd/rules";  // the daemon's rules
    std::filesystem::path state = "/var/lib/vexmor-engine";  // files of hosts; made if missing
    std::filesystem::path daemonConfiguration = "/etc/opensnitchd/default-config.json";
    // Where the daemon's reports are awaited; its configuration has to say so. The folder is made if missing.
    std::string interface = "unix:///run/vexmor-engine/interface";
};

// Returns the exit status: 0 after a signal. Each failure is one line on standard error; one at start ends the service
// with 1, later ones are tried again. Call once, from the main thread.
int runService(const Places& places);

}  // namespace engine
