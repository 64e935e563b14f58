// Desktop entries: from the file to an application in the list.
#include <glib.h>

#include "fuzz/Target.h"
#include "platform/desktop/DesktopEntry.h"
#include "store/Files.h"

namespace fuzz {

namespace {

using FullKeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_free)>;

QString take(gchar* text) {
    const std::unique_ptr<gchar, decltype(&g_free)> owned(text, g_free);
    return QString::fromUtf8(text);
}

// Leaving translations out before parsing changes nothing about a file that can be parsed with them.
void demandSameInFull(std::string_view bytes, const platform::DesktopEntry& entry) {
    const FullKeyFile file(g_key_file_new(), g_key_file_free);
    const bool isWhole = !bytes.empty() && g_key_file_load_from_data(file.get(), bytes.data(), bytes.size(),
                                                                     G_KEY_FILE_NONE, nullptr) != 0;
    if (!isWhole) return;
    const auto text = [&](const char* key) {
        return take(g_key_file_get_string(file.get(), "Desktop Entry", key, nullptr));
    };
    const QString name = take(g_key_file_get_locale_string(file.get(), "Desktop Entry", "Name", nullptr, nullptr));
    demand(entry.name == name.simplified(), "the name is another without the translations");
    demand(entry.icon == text("Icon"), "the icon is another without the translations");
    demand(!entry.listed || text("Type") == u"Application", "something else is listed as an application");
}

}  // namespace

bool accepts(std::string_view bytes) {
    static const int language = setenv("LC_ALL", "de_DE.UTF-8", 1);
    demand(language == 0, "there is no language to translate into");
    static const store::TemporaryDirectory directory;
    const auto folder = directory / "applications";
    std::filesystem::create_directory(folder);
    store::put(folder / "fuzz.desktop", bytes);
    const auto catalog = platform::readDesktopCatalog({directory.path()}, {});
    const auto entry = catalog.value(QStringLiteral("fuzz"));
    demand(catalog.size() == 1 && entry, "the file is not in the catalog");
    demand(entry->name == entry->name.simplified(), "the name has room around or inside it");
    demand(!entry->listed || !entry->name.isEmpty(), "an application without a name is listed");
    demandSameInFull(bytes, *entry);
    return entry->listed;
}

}  // namespace fuzz
