#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <vector>

#include "engine/daemon/DaemonInterface.h"
#include "engine/log/EngineLog.h"
#include "engine/programs/ProcessMatcher.h"
#include "engine/programs/Programs.h"
#include "store/files/Descriptor.h"

namespace engine {

// Where the daemon's reports become lines of the app's log: those of connections of apps under the firewall, while the
// log is on. Its questions are answered as the files say at that moment.
//
// One thread, except that reports and questions come in gRPC's own: lines wait here until the event loop writes them.
class ConnectionLog {
public:
    // `device`: below which the shared files are.
    explicit ConnectionLog(std::filesystem::path device);

    // Listens at an address "unix:///...". False and why when that fails; try again later.
    bool listen(const std::string& address, std::string& failure);
    bool isListening() const { return interface_ != nullptr; }

    // From now on these are the apps' programs, and lines are kept or not.
    void update(const Programs& programs, bool isOn);

    // Keeps what is worth a line. Any thread.
    void take(const std::vector<Report>& reports);

    // Becomes readable (poll) when lines wait for write(); -1 when the system has none left.
    int descriptor() const { return waiting_.number(); }

    // Writes the lines that wait. On an error they are lost, and later ones are tried again.
    std::error_code write();

private:
    Verdict answer(const Report& question);

    std::filesystem::path device_;
    EngineLog log_;
    store::Descriptor waiting_;

    std::mutex mutex_;  // of all that follows but the interface
    std::shared_ptr<const ProcessMatcher> matcher_;
    std::map<std::string, std::string> names_;
    bool isOn_ = false;
    std::vector<LogLine> lines_;

    std::unique_ptr<DaemonInterface> interface_;  // last: its threads use the others
};

}  // namespace engine
