#include "platform/system/DesktopApplicationList.h"

#include <QFile>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/desktop/DesktopEntry.h"
#include "platform/system/IconImage.h"
#include "platform/system/IconTheme.h"

namespace platform {

namespace fs = std::filesystem;

namespace {

constexpr QStringView genericIconIdentifier = u"com.apple.WebSheet";

}  // namespace

// Files are read without the lock. A result is stored under the lock only if its source is still current.
struct DesktopApplicationList::Private {
    // The inputs of an icon; a cached icon is valid while they are unchanged.
    struct Source {
        std::shared_ptr<const DesktopEntry> entry;  // none: no such application
        std::shared_ptr<const IconTheme> theme;
        bool operator==(const Source&) const = default;
    };
    struct Icon {
        Source source;
        fs::path file;
        std::optional<FileStamp> stamp;
        QImage image;  // null: could not be loaded
    };
    // Result of storing a loaded icon: stored; another thread stored it first; its source has changed meanwhile.
    enum class Outcome { kept, known, outdated };
    using IconKey = std::pair<QString, int>;  // identifier, points

    std::shared_ptr<const DesktopCatalog> takeCatalogReadAhead();
    std::shared_ptr<const DesktopCatalog> refresh();
    Source readSource(const QString& identifier);
    void forgetStaleIcons();
    std::optional<QImage> knownIcon(const IconKey& key) const;
    Icon loadIcon(const Source& from, const IconKey& key) const;
    std::pair<QImage, Outcome> keepIcon(const Icon& icon, const IconKey& key);
    Source source(const QString& identifier) const;  // with the lock held
    fs::path iconFile(const Source& from, int points) const;
    fs::path absoluteIconFile(const fs::path& path) const;

    std::vector<fs::path> dataDirectories;
    fs::path root;
    double scale = 1;

    mutable std::mutex lock{};                        // guards the members below
    std::shared_ptr<const DesktopCatalog> catalog{};  // none: not read yet
    std::shared_ptr<const IconTheme> theme{};
    QHash<IconKey, Icon> icons{};

    // Last members: joined before the others are destroyed.
    std::mutex readingLock{};
    std::shared_ptr<const DesktopCatalog> catalogReadAhead{};  // written by the thread, read after its end
    std::jthread reading{};
};

DesktopApplicationList::DesktopApplicationList(std::vector<fs::path> dataDirectories, fs::path root)
    : d_(new Private{.dataDirectories = std::move(dataDirectories), .root = std::move(root)}) {}

DesktopApplicationList::~DesktopApplicationList() = default;

void DesktopApplicationList::setScale(double scale) {
    d_->scale = scale;
}

QHash<QString, QString> DesktopApplicationList::applicationsFilteredUsingPredicate(
    const std::function<bool(const QString&)>& predicate) {
    const auto catalog = d_->refresh();
    QHash<QString, QString> names;
    for (auto item = catalog->cbegin(); item != catalog->cend(); ++item) {
        const DesktopEntry& entry = *item.value();
        if (entry.listed && (!predicate || predicate(item.key()))) names.insert(item.key(), entry.name);
    }
    return names;
}

bool DesktopApplicationList::hasCachedIconOfSize(int points, const QString& identifier) const {
    const std::lock_guard guard(d_->lock);
    const auto icon = d_->icons.constFind({identifier, points});
    return icon != d_->icons.cend() && !icon->image.isNull();
}

bool DesktopApplicationList::iconFailed(int points, const QString& identifier) const {
    const std::lock_guard guard(d_->lock);
    const auto icon = d_->icons.constFind({identifier, points});
    return icon != d_->icons.cend() && icon->image.isNull();
}

QImage DesktopApplicationList::iconOfSize(int points, const QString& identifier) {
    return copyIconOfSize(points, identifier);
}

QImage DesktopApplicationList::copyIconOfSize(int points, const QString& identifier) {
    const Private::IconKey key{identifier, points};
    for (;;) {
        const Private::Source source = d_->readSource(identifier);
        if (const auto icon = d_->knownIcon(key)) return *icon;
        const auto [image, outcome] = d_->keepIcon(d_->loadIcon(source, key), key);
        if (outcome == Private::Outcome::outdated) continue;
        if (outcome == Private::Outcome::kept && !image.isNull()) Q_EMIT iconLoaded(identifier, points);
        return image;
    }
}

void DesktopApplicationList::readAhead() {
    const std::lock_guard guard(d_->readingLock);
    try {
        // Not pinned to a processor: another one reads the fonts, and this one is idle while the app waits for them.
        d_->reading = std::jthread([d = d_.get()] {
            d->catalogReadAhead =
                std::make_shared<const DesktopCatalog>(readDesktopCatalog(d->dataDirectories, DesktopCatalog()));
        });
    } catch (const std::system_error&) {  // the thread limit is reached; the first query reads
    }
}

std::shared_ptr<const DesktopCatalog> DesktopApplicationList::Private::takeCatalogReadAhead() {
    const std::lock_guard guard(readingLock);
    if (reading.joinable()) reading.join();
    return std::exchange(catalogReadAhead, nullptr);
}

std::shared_ptr<const DesktopCatalog> DesktopApplicationList::Private::refresh() {
    std::unique_lock guard(lock);
    const auto knownCatalog = catalog;
    const auto knownTheme = theme;
    guard.unlock();

    auto freshCatalog = takeCatalogReadAhead();
    if (!freshCatalog)
        freshCatalog = std::make_shared<const DesktopCatalog>(
            readDesktopCatalog(dataDirectories, knownCatalog ? *knownCatalog : DesktopCatalog()));
    const bool themeHasChanged = knownTheme && knownTheme->hasChangedOnDisk();

    guard.lock();
    catalog = freshCatalog;
    if (themeHasChanged) theme = nullptr;
    guard.unlock();
    forgetStaleIcons();
    return freshCatalog;
}

// Icons are removed only here and never overwritten, so an icon that was examined without the lock is still the same
// when it is removed.
void DesktopApplicationList::Private::forgetStaleIcons() {
    std::unique_lock guard(lock);
    const QHash<IconKey, Icon> knownIcons = icons;
    guard.unlock();

    QList<IconKey> changedFiles;
    for (auto icon = knownIcons.cbegin(); icon != knownIcons.cend(); ++icon)
        if (stampOf(icon->file) != icon->stamp) changedFiles.append(icon.key());

    guard.lock();
    for (const IconKey& key : changedFiles) icons.remove(key);
    icons.removeIf([this](const auto& icon) { return icon->source != source(icon.key().first); });
}

DesktopApplicationList::Private::Source DesktopApplicationList::Private::source(const QString& identifier) const {
    return {catalog->value(identifier), theme};
}

// The current source of the identifier's icon. Reads the catalog and the icon theme on first use.
DesktopApplicationList::Private::Source DesktopApplicationList::Private::readSource(const QString& identifier) {
    std::unique_lock guard(lock);
    const bool needsCatalog = !catalog;
    const bool needsTheme = !theme;
    guard.unlock();

    if (needsCatalog) refresh();
    std::shared_ptr<const IconTheme> freshTheme;
    if (needsTheme)
        freshTheme = std::make_shared<const IconTheme>(
            dataDirectories, QStringList{IconTheme::preferredTheme(root), QStringLiteral("Adwaita")});

    guard.lock();
    if (!theme) theme = freshTheme;
    return source(identifier);
}

std::optional<QImage> DesktopApplicationList::Private::knownIcon(const IconKey& key) const {
    const std::lock_guard guard(lock);
    const auto icon = icons.constFind(key);
    if (icon == icons.cend()) return {};
    return icon->image;
}

DesktopApplicationList::Private::Icon DesktopApplicationList::Private::loadIcon(const Source& from,
                                                                                const IconKey& key) const {
    const auto& [identifier, points] = key;
    Icon icon{from, iconFile(from, points), {}, {}};
    icon.stamp = stampOf(icon.file);
    icon.image = identifier == genericIconIdentifier ? genericIcon(points, scale) : readIcon(icon.file, points, scale);
    return icon;
}

std::pair<QImage, DesktopApplicationList::Private::Outcome> DesktopApplicationList::Private::keepIcon(
    const Icon& icon, const IconKey& key) {
    const std::lock_guard guard(lock);
    if (icon.source != source(key.first)) return {{}, Outcome::outdated};
    const auto known = icons.constFind(key);
    if (known != icons.cend()) return {known->image, Outcome::known};
    icons.insert(key, icon);
    return {icon.image, Outcome::kept};
}

fs::path DesktopApplicationList::Private::iconFile(const Source& from, int points) const {
    if (!from.entry || !from.entry->listed) return {};
    const QString& name = from.entry->icon;
    if (name.startsWith(u'/')) return absoluteIconFile(QFile::encodeName(name).toStdString());
    return from.theme->find(name, points, scale);
}

fs::path DesktopApplicationList::Private::absoluteIconFile(const fs::path& path) const {
    if (root == "/") return path;
    const fs::path top = fs::absolute(root).lexically_normal();
    const fs::path plainPath = path.lexically_normal();
    const bool isBelowRoot = plainPath.string().starts_with((top / "").string());
    return isBelowRoot ? plainPath : top / plainPath.relative_path();
}

}  // namespace platform
