#include "platform/system/KeyFile.h"

#include <glib.h>

#include "platform/system/RegularFile.h"

namespace platform {

namespace {

constexpr qint64 longestFile = 1 << 20;

QString takeString(gchar* text) {
    const QString string = QString::fromUtf8(text);
    g_free(text);
    return string;
}

}  // namespace

void KeyFile::Release::operator()(_GKeyFile* file) const {
    g_key_file_free(file);
}

std::optional<KeyFile> KeyFile::read(const std::filesystem::path& path) {
    const auto bytes = readRegularFile(path, longestFile);
    if (!bytes || bytes->isEmpty()) return {};
    KeyFile keyFile;
    keyFile.file_.reset(g_key_file_new());
    if (!g_key_file_load_from_data(keyFile.file_.get(), bytes->constData(), bytes->size(), G_KEY_FILE_NONE, nullptr))
        return {};
    return keyFile;
}

QString KeyFile::string(const char* group, const char* key) const {
    return takeString(g_key_file_get_string(file_.get(), group, key, nullptr));
}

QString KeyFile::localizedString(const char* group, const char* key) const {
    return takeString(g_key_file_get_locale_string(file_.get(), group, key, nullptr, nullptr));
}

QStringList KeyFile::commaSeparatedList(const char* group, const char* key) const {
    QStringList list;
    for (const QString& item : string(group, key).split(u',', Qt::SkipEmptyParts)) list.append(item.trimmed());
    return list;
}

bool KeyFile::boolean(const char* group, const char* key) const {
    return g_key_file_get_boolean(file_.get(), group, key, nullptr);
}

int KeyFile::integer(const char* group, const char* key, int otherwise) const {
    GError* error = nullptr;
    const int value = g_key_file_get_integer(file_.get(), group, key, &error);
    if (!error) return value;
    g_error_free(error);
    return otherwise;
}

}  // namespace platform
