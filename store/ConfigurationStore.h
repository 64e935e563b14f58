#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "store/Writers.h"
#include "store/plist/PropertyList.h"

namespace store {

class NotifyCenter;

// The files that the app shares with the firewall engine, and the only way to change them: read the file whole, change
// it, write it whole and atomically, tell the engine where it must hear of it. Every change names its row of the
// writers' table, which settles the file, what happens when there is none, the marker entry and the notification.
//
// A file that is missing, or is no property-list dictionary, reads as no dictionary. A file that is replaced by
// something not made from it is kept beside it, see SecondName.h. Failures are silent: a write that fails leaves the
// old file as it was, and a file that the system would not let be read is not changed. Main thread only.
class ConfigurationStore {
public:
    // `root` is the file system's root as the app sees it. `notifyCenter` outlives the store. Removes what an earlier
    // run that was killed while writing has left beside the files.
    ConfigurationStore(std::filesystem::path root, NotifyCenter& notifyCenter);

    std::optional<Dictionary> read(File file) const;
    bool exists(File file) const;

    // The movement. `change` is handed the dictionary just read; when there is none and the writer then writes
    // nothing, or when reading failed, it is not called and nothing is posted. `afterWrite` runs between the write and
    // the notification. Returns whether `change` was called.
    bool change(const Writer& writer, const std::function<void(Dictionary&)>& change,
                const std::function<void()>& afterWrite = {});

    // Raises a flag of the GUI settings, which says that something has been explained. Returns whether it was down:
    // where it can be neither read nor written, once in the life of this store.
    bool raiseFlag(std::string_view key);

    // Replaces a file whole and keeps what it held: no marker entry is added, nothing is posted.
    void replace(File file, const Dictionary& dictionary);

    // First use: an app rules file with the marker entry alone. One that is there is left as it is, readable or not.
    void createAppRulesFileIfMissing();

    // The master switch: the firewall is off while the disabled marker exists. Setting it posts reload-both.
    bool isDisabled() const;
    void setDisabled(bool disabled);

    // Both rule files become the marker entry alone, app rules first, and what they held is kept; `afterWrite` runs
    // before the notification.
    void deleteAllRulesAndSettings(const std::function<void()>& afterWrite = {});

    // The application is terminating: posts reload-both, and waits a moment where the bus has stalled.
    void terminate();

    std::filesystem::path path(File file) const;
    std::filesystem::path logFile() const;
    std::filesystem::path exportDirectory() const;
    std::filesystem::path listDirectory() const;

private:
    std::filesystem::path root_;
    NotifyCenter& notifyCenter_;
    std::set<std::string, std::less<>> raisedInVain_;  // flags that no file keeps
};

}  // namespace store
