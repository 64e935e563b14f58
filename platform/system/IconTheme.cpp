#include "platform/system/IconTheme.h"

#include <QFile>
#include <algorithm>
#include <utility>

#include "platform/desktop/KeyFile.h"

namespace platform {

namespace fs = std::filesystem;

namespace {

constexpr QStringView hicolor = u"hicolor";
constexpr auto themeGroup = "Icon Theme";
constexpr const char* extensions[] = {".svg", ".png", ".xpm"};

// Desktop entries often contain the extension, which the Icon Theme standard leaves out.
QString withoutExtension(const QString& name) {
    for (const char* extension : extensions) {
        const QLatin1String end(extension);
        if (name.endsWith(end)) return name.chopped(end.size());
    }
    return name;
}

fs::path toPath(const QString& name) {
    return QFile::encodeName(name).toStdString();
}

}  // namespace

IconTheme::IconTheme(std::vector<fs::path> dataDirectories, const QStringList& themes)
    : dataDirectories_(std::move(dataDirectories)) {
    QStringList visited;
    for (const QString& theme : themes) addTheme(theme, visited);
    addTheme(hicolor.toString(), visited);
    addUnthemedFolders();
}

QString IconTheme::preferredTheme(const fs::path& root) {
    std::vector<fs::path> settings;
    if (root == "/") {
        const fs::path home = qEnvironmentVariable("HOME").toStdString();
        const fs::path config = qEnvironmentVariable("XDG_CONFIG_HOME").toStdString();
        settings.push_back((config.is_absolute() ? config : home / ".config") / "gtk-3.0/settings.ini");
    }
    settings.push_back(root / "etc/gtk-3.0/settings.ini");
    for (const fs::path& file : settings) {
        const auto keys = KeyFile::read(file);
        QString theme = keys ? keys->string("Settings", "gtk-icon-theme-name") : QString();
        if (!theme.isEmpty()) return theme;
    }
    return {};
}

void IconTheme::addTheme(const QString& theme, QStringList& visited) {
    if (theme.isEmpty() || theme.contains(u'/') || visited.contains(theme)) return;
    visited.append(theme);
    std::vector<fs::path> tops;  // a theme may be spread over several data directories
    std::optional<KeyFile> index;
    for (const fs::path& directory : dataDirectories_) {
        const fs::path top = directory / "icons" / toPath(theme);
        watch(top);
        if (!watched_.at(top)) continue;
        tops.push_back(top);
        watch(top / "index.theme");
        if (!index) index = KeyFile::read(top / "index.theme");
    }
    themes_.emplace_back();
    if (index)
        addIndexedFolders(*index, tops);
    else if (theme == hicolor)
        addUsualFolders(tops);
    if (!index) return;
    for (const QString& parent : index->commaSeparatedList(themeGroup, "Inherits"))
        if (parent != hicolor) addTheme(parent, visited);
}

void IconTheme::addIndexedFolders(const KeyFile& index, const std::vector<fs::path>& tops) {
    for (const QString& name : index.commaSeparatedList(themeGroup, "Directories") +
                                   index.commaSeparatedList(themeGroup, "ScaledDirectories")) {
        const QByteArray group = name.toUtf8();
        const auto number = [&](const char* key, int otherwise) {
            return index.integer(group.constData(), key, otherwise);
        };
        const int size = number("Size", 0);
        if (size <= 0) continue;
        const QString type = index.string(group.constData(), "Type");
        Folder folder{.path = {}, .smallest = size, .largest = size, .scale = std::max(1, number("Scale", 1))};
        if (type == u"Scalable") {
            folder.smallest = number("MinSize", size);
            folder.largest = number("MaxSize", size);
        } else if (type != u"Fixed") {
            const int threshold = number("Threshold", 2);
            folder.smallest -= threshold;
            folder.largest += threshold;
        }
        addFolder(name, folder, tops);
    }
}

// Default folders of hicolor: applications install icons there even where the package with its index is missing.
void IconTheme::addUsualFolders(const std::vector<fs::path>& tops) {
    addFolder(QStringLiteral("scalable/apps"), {.path = {}, .smallest = 1, .largest = 512, .scale = 1}, tops);
    for (const int size : {16, 22, 24, 32, 36, 48, 64, 72, 96, 128, 192, 256, 512}) {
        const auto name = QStringLiteral("%1x%1%2/apps").arg(size);
        addFolder(name.arg(QString()), {.path = {}, .smallest = size - 2, .largest = size + 2, .scale = 1}, tops);
        addFolder(name.arg(u"@2"), {.path = {}, .smallest = size - 2, .largest = size + 2, .scale = 2}, tops);
    }
}

void IconTheme::addFolder(const QString& name, Folder folder, const std::vector<fs::path>& tops) {
    for (const fs::path& top : tops) {
        folder.path = top / toPath(name);
        // Creating a missing folder changes the time stamp of its nearest existing ancestor.
        for (fs::path path = folder.path; path != top && path.has_relative_path(); path = path.parent_path())
            if (stampOf(path)) watch(path);
        if (watched_.contains(folder.path)) themes_.back().push_back(folder);
    }
}

void IconTheme::addUnthemedFolders() {
    std::vector<Folder>& folders = themes_.emplace_back();
    for (const char* name : {"icons", "pixmaps"}) {
        for (const fs::path& directory : dataDirectories_) {
            Folder folder;
            folder.path = directory / name;
            watch(folder.path);
            folders.push_back(std::move(folder));
        }
    }
}

void IconTheme::watch(const fs::path& path) {
    if (!watched_.contains(path)) watched_.emplace(path, stampOf(path));
}

bool IconTheme::hasChangedOnDisk() const {
    return std::any_of(watched_.begin(), watched_.end(),
                       [](const auto& item) { return stampOf(item.first) != item.second; });
}

double IconTheme::Folder::misfit(int points, double screenScale) const {
    if (scale == screenScale && smallest <= points && points <= largest) return -1;
    const double pixels = points * screenScale;
    return std::max({0.0, smallest * scale - pixels, pixels - largest * scale});
}

fs::path IconTheme::find(const QString& name, int points, double scale) const {
    const QString plainName = withoutExtension(name);
    if (plainName.isEmpty() || plainName.contains(u'/') || plainName.contains(QChar::Null)) return {};
    for (const std::vector<Folder>& folders : themes_) {
        auto file = findIn(folders, plainName, points, scale);
        if (!file.empty()) return file;
    }
    return {};
}

fs::path IconTheme::findIn(const std::vector<Folder>& folders, const QString& name, int points, double scale) {
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
