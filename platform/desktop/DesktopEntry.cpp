#include "platform/desktop/DesktopEntry.h"

#include <dirent.h>
#include <sys/stat.h>

#include <array>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/desktop/KeyFile.h"
#include "store/parallel/Parts.h"

namespace platform {

namespace {

constexpr std::string_view suffix = ".desktop";

// Parses entry.file and sets the members that depend on its content.
void readDesktopEntry(DesktopEntry& entry) {
    constexpr auto group = "Desktop Entry";
    // Encoding is read by the parser itself, which rejects everything but UTF-8.
    constexpr std::array<std::string_view, 6> keysOfUse{"Name", "Icon", "Type", "Hidden", "NoDisplay", "Encoding"};
    const auto text = readRegularFileSeen(entry.file, entry.stamp.size, KeyFile::longestFile);
    if (!text) return;
    const auto keys = KeyFile::parse({text->constData(), std::size_t(text->size())}, keysOfUse);
    if (!keys) return;
    entry.name = keys->localizedString(group, "Name").simplified();
    entry.icon = keys->string(group, "Icon");
    entry.listed = keys->string(group, "Type") == u"Application" && !entry.name.isEmpty() &&
                   !keys->boolean(group, "Hidden") && !keys->boolean(group, "NoDisplay");
}

// Traverses one `applications` folder breadth first. Folders are identified by device and inode and visited once, since
// links may form cycles. Entries that are not known yet are added to the catalog and to `unread`.
class FolderWalk {
public:
    using Entries = std::vector<std::shared_ptr<DesktopEntry>>;

    FolderWalk(DesktopCatalog& catalog, const DesktopCatalog& known, Entries& unread)
        : catalog_(catalog), known_(known), unread_(unread) {}

    void walk(std::string folder) {
        folders_.push_back({std::move(folder), {}});
        while (!folders_.empty()) {
            const Folder next = std::move(folders_.front());
            folders_.pop_front();
            readFolder(next);
        }
    }

private:
    struct Folder {
        std::string path;
        std::string idPrefix;
    };

    void readFolder(const Folder& folder) {
        struct stat status;
        if (::stat(folder.path.c_str(), &status) != 0 || !visited_.insert({status.st_dev, status.st_ino}).second)
            return;
        DIR* directory = ::opendir(folder.path.c_str());
        if (!directory) return;
        while (const dirent* item = ::readdir(directory)) readItem(folder, ::dirfd(directory), *item);
        ::closedir(directory);
    }

    void readItem(const Folder& folder, int directory, const dirent& item) {
        const std::string_view name = item.d_name;
        const bool isEntryName = name.ends_with(suffix);
        if (name == "." || name == ".." || (item.d_type == DT_REG && !isEntryName)) return;
        struct stat status;
        if (::fstatat(directory, item.d_name, &status, 0) != 0) return;
        const std::string path = folder.path + '/' + item.d_name;
        if (S_ISDIR(status.st_mode))
            folders_.push_back({path, folder.idPrefix + item.d_name + '-'});
        else if (S_ISREG(status.st_mode) && isEntryName)
            addEntry(folder.idPrefix + std::string(name.substr(0, name.size() - suffix.size())), path,
                     FileStamp(status));
    }

    void addEntry(const std::string& id, const std::string& path, const FileStamp& stamp) {
        const QString identifier = QString::fromStdString(id);
        if (identifier.isEmpty() || identifier.contains(QChar::ReplacementCharacter)) return;  // not valid UTF-8
        if (catalog_.contains(identifier)) return;
        if (const auto entry = known_.value(identifier); entry && entry->stamp == stamp && entry->file == path) {
            catalog_.insert(identifier, entry);
            return;
        }
        auto entry = std::make_shared<DesktopEntry>();
        entry->file = path;
        entry->stamp = stamp;
        catalog_.insert(identifier, entry);
        unread_.push_back(std::move(entry));
    }

    DesktopCatalog& catalog_;
    const DesktopCatalog& known_;
    Entries& unread_;
    std::deque<Folder> folders_;
    std::set<std::pair<dev_t, ino_t>> visited_;
};

}  // namespace

DesktopCatalog readDesktopCatalog(const std::vector<std::filesystem::path>& dataDirectories,
                                  const DesktopCatalog& known) {
    DesktopCatalog catalog;
    catalog.reserve(known.size());
    FolderWalk::Entries unread;
    for (const std::filesystem::path& directory : dataDirectories)
        FolderWalk(catalog, known, unread).walk((directory / "applications").string());
    constexpr std::size_t worthwhile = 32;  // entries per chunk, about 1 ms of reading
    store::inParts(unread.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) readDesktopEntry(*unread[i]);
    });
    return catalog;
}

}  // namespace platform
