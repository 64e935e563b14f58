#pragma once

#include <sys/stat.h>

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "monkey/Screens.h"
#include "store/ConfigurationStore.h"

namespace monkey {

// Looks at the files after every event: each is entire, and only what somebody may change has changed. What was
// replaced by something that was not made from it has been kept; nothing lies about.
class ConfigurationWatch {
public:
    using IsInstalled = std::function<bool(std::string_view identifier)>;

    ConfigurationWatch(const store::ConfigurationStore& files, IsInstalled isInstalled);

    // Takes the files as they are: somebody else has changed them, or the app has just created them.
    void accept();

    // What is wrong with what has happened since while these screens were seen; empty when nothing is.
    std::string check(const std::vector<Sight>& seen);

    // Files that the app has written, by their names.
    static const std::map<std::string, long>& writes() { return writes_; }

private:
    struct Known {
        struct stat status {};  // st_ino 0: there is no file
        std::string bytes;      // of a regular file
        std::optional<store::Dictionary> dictionary;
    };
    using Names = std::set<std::string>;

    Known read(const std::filesystem::path& path, const Known& before) const;
    std::string checkFile(store::File file, const std::vector<Sight>& seen);
    std::string checkContent(store::File file, const Known& before, const Known& now,
                             const std::vector<Sight>& seen) const;
    std::string checkKept(store::File file, const Known& before, std::string_view suffix) const;
    std::string checkFolders(const std::vector<Sight>& seen);
    Names namesIn(const std::filesystem::path& folder) const;

    const store::ConfigurationStore& files_;
    IsInstalled isInstalled_;
    std::array<Known, 3> known_;
    Names preferences_;
    Names exports_;
    Names lists_;
    inline static std::map<std::string, long> writes_;
};

}  // namespace monkey
