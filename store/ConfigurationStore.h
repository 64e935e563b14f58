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

// A file that is replaced by something not made from it is kept beside the new one under its name and a suffix.
inline constexpr std::string_view damagedSuffix = ".damaged";    // it was no dictionary, or could not be read
inline constexpr std::string_view previousSuffix = ".previous";  // it was one

// The files that the app shares with the firewall engine, and the only way to change them: read the whole file, change
// the dictionary, write the whole file atomically, notify the engine. Every change names its row of the table in
// Writers.h, which says which file, what to do when it is missing, whether to add the marker entry, and what to post.
//
// A file that is missing, or holds no dictionary, reads as no dictionary. Failures are silent: a write that fails
// leaves the old file unchanged, and a file that the system refused to read is not changed. Main thread only.
class ConfigurationStore {
public:
    // `root` is the root directory of the file system that the app works on. `notifyCenter` must outlive the store.
    // Removes temporary files that an earlier, killed process left beside the files.
    ConfigurationStore(std::filesystem::path root, NotifyCenter& notifyCenter);

    std::optional<Dictionary> read(File file) const;
    bool exists(File file) const;

    // Reads the writer's file, calls `change` with its dictionary, writes it, calls `afterWrite` and posts the writer's
    // notification. Nothing is called, written or posted when reading failed, or when there is no dictionary and the
    // writer says writeNothing. Returns whether `change` was called.
    bool change(const Writer& writer, const std::function<void(Dictionary&)>& change,
                const std::function<void()>& afterWrite = {});

    // Sets a flag of the GUI settings, which says that something has been explained. Returns whether it was unset.
    // Where the file can be neither read nor written, that is once in the life of this store.
    bool raiseFlag(std::string_view key);

    // Replaces the whole file and keeps the old one (see the suffixes). Adds no marker entry, posts nothing.
    void replace(File file, const Dictionary& dictionary);

    // First start: creates an app rules file that holds the marker entry alone. An existing file is not changed.
    void createAppRulesFileIfMissing();

    // The master switch: the firewall is off while the disabled marker, a file, exists. Setting it posts reloadBoth.
    bool isDisabled() const;
    void setDisabled(bool disabled);

    // Replaces both rule files, app rules first, by the marker entry alone and keeps the old ones. Calls `afterWrite`,
    // then posts reloadBoth.
    void deleteAllRulesAndSettings(const std::function<void()>& afterWrite = {});

    // To be called when the application terminates: posts reloadBoth and flushes notifications that wait for the bus.
    void terminate();

    std::filesystem::path path(File file) const;
    std::filesystem::path logFile() const;
    std::filesystem::path exportDirectory() const;
    std::filesystem::path listDirectory() const;

private:
    std::filesystem::path root_;
    NotifyCenter& notifyCenter_;
    std::set<std::string, std::less<>> raisedInVain_;  // flags that could not be stored
};

}  // namespace store
