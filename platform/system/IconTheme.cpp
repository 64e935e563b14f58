#include "platform/system/IconTheme.h"

#include <QFile>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "platform/system/KeyFile.h"

namespace platform {

namespace {

constexpr const char* extensions[] = {".svg", ".png", ".xpm"};

// Entries often name an icon with its extension although they should not.
QString withoutExtension(const QString& name) {
    for (const char* extension : extensions) {
        const QLatin1String end(extension);
        if (name.endsWith(end)) return name.chopped(end.size());
    }
    return name;
}

std::filesystem::path toPath(const QString& name) {
    return QFile::encodeName(name).toStdString();
}

}  // namespace

IconTheme::IconTheme(std::vector<std::filesystem::path> dataDirectories, const QStringList& themes)
    : dataDirectories_(std::move(dataDirectories)) {
    QStringList visited;
    for (const QString& theme : themes) addTheme(theme, visited);
    addTheme(QStringLiteral("hicolor"), visited);
    addUnthemedFolders();
}

QString IconTheme::preferredTheme(const std::filesystem::path& root) {
    std::vector<std::filesystem::path> settings;
    if (root == "/") {
        const std::filesystem::path home = qEnvironmentVariable("HOME").toStdString();
        const std::filesystem::path config = qEnvironmentVariable("XDG_CONFIG_HOME").toStdString();
        settings.push_back((config.is_absolute() ? config : home / ".config") / "gtk-3.0/settings.ini");
    }
    settings.push_back(root / "etc/gtk-3.0/settings.ini");
    for (const std::filesystem::path& file : settings) {
        const auto keys = KeyFile::read(file);
        const QString theme = keys ? keys->string("Settings", "gtk-icon-theme-name") : QString();
        if (!theme.isEmpty()) return theme;
    }
    return {};
}

void IconTheme::addTheme(const QString& theme, QStringList& visited) {
    if (theme.isEmpty() || theme.contains(u'/') || visited.contains(theme)) return;
    visited.append(theme);
    std::optional<KeyFile> index;
    for (const std::filesystem::path& directory : dataDirectories_) {
        const auto path = directory / "icons" / toPath(theme);
        watch(path);
        watch(path / "index.theme");
        if (!index) index = KeyFile::read(path / "index.theme");
    }
    if (!index) return;
    addFolders(theme, *index);
    for (const QString& parent : index->commaSeparatedList("Icon Theme", "Inherits"))
        if (parent != u"hicolor") addTheme(parent, visited);
}

void IconTheme::addFolders(const QString& theme, const KeyFile& index) {
    std::vector<Folder>& folders = themes_.emplace_back();
    const QStringList names = index.commaSeparatedList("Icon Theme", "Directories") +
                              index.commaSeparatedList("Icon Theme", "ScaledDirectories");
    for (const QString& name : names) {
        const QByteArray group = name.toUtf8();
        Folder folder;
        const QString type = index.string(group.constData(), "Type");
        if (type == u"Fixed") folder.type = Folder::Type::fixed;
        if (type == u"Scalable") folder.type = Folder::Type::scalable;
        folder.size = index.integer(group.constData(), "Size", 0);
        if (folder.size <= 0) continue;
        folder.scale = std::max(1, index.integer(group.constData(), "Scale", 1));
        const int threshold = index.integer(group.constData(), "Threshold", 2);
        const bool isThreshold = folder.type == Folder::Type::threshold;
        folder.smallest =
            isThreshold ? folder.size - threshold : index.integer(group.constData(), "MinSize", folder.size);
        folder.largest =
            isThreshold ? folder.size + threshold : index.integer(group.constData(), "MaxSize", folder.size);
        for (const std::filesystem::path& directory : dataDirectories_) {
            const auto top = directory / "icons" / toPath(theme);
            folder.path = top / toPath(name);
            // A folder that is made later shows in the nearest one above it.
            for (auto path = folder.path; path != top && path.has_relative_path(); path = path.parent_path())
                if (stampOf(path)) watch(path);
            if (stampOf(folder.path)) folders.push_back(folder);
        }
    }
}

void IconTheme::addUnthemedFolders() {
    std::vector<Folder>& folders = themes_.emplace_back();
    for (const char* name : {"icons", "pixmaps"}) {
        for (const std::filesystem::path& directory : dataDirectories_) {
            Folder folder;
            folder.path = directory / name;
            watch(folder.path);
            folders.push_back(std::move(folder));
        }
    }
}

void IconTheme::watch(const std::filesystem::path& path) {
    if (!watched_.contains(path)) watched_.emplace(path, stampOf(path));
}

bool IconTheme::hasChangedOnDisk() const {
    return std::any_of(watched_.begin(), watched_.end(),
                       [](const auto& item) { return stampOf(item.first) != item.second; });
}

double IconTheme::Folder::misfit(int points, double screenScale) const {
    const bool isFixed = type == Type::fixed;
    const int least = isFixed ? size : smallest;
    const int most = isFixed ? size : largest;
    if (scale == screenScale && least <= points && points <= most) return -1;
    const double pixels = points * screenScale;
    return std::max({0.0, least * scale - pixels, pixels - most * scale});
}

std::filesystem::path IconTheme::find(const QString& name, int points, double scale) const {
    const QString plainName = withoutExtension(name);
    if (plainName.isEmpty() || plainName.contains(u'/') || plainName.contains(QChar::Null)) return {};
    for (const std::vector<Folder>& folders : themes_) {
        auto file = findIn(folders, plainName, points, scale);
        if (!file.empty()) return file;
    }
    return {};
}

std::filesystem::path IconTheme::findIn(const std::vector<Folder>& folders, const QString& name, int points,
                                        double scale) {
    std::vector<std::pair<double, const Folder*>> byFit;
    byFit.reserve(folders.size());
    for (const Folder& folder : folders) byFit.emplace_back(folder.misfit(points, scale), &folder);
    std::stable_sort(byFit.begin(), byFit.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& [misfit, folder] : byFit) {
        for (const char* extension : extensions) {
            auto file = folder->path / toPath(name + QLatin1String(extension));
            if (isRegularFile(file)) return file;
        }
    }
    return {};
}

}  // namespace platform
