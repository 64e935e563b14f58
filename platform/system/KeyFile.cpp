#include "platform/system/KeyFile.h"

#include <glib.h>

#include <algorithm>

#include "platform/system/RegularFile.h"

namespace platform {

namespace {

constexpr qint64 longestFile = 1 << 20;

QString takeString(gchar* text) {
    QString string = QString::fromUtf8(text);
    g_free(text);
    return string;
}

// Most of a desktop entry is translations: not parsing them makes reading it several times as fast.
QByteArray withoutTranslationsExceptOf(QByteArrayView translatedKey, const QByteArray& bytes) {
    QByteArray kept;
    kept.reserve(bytes.size());
    for (qsizetype start = 0; start < bytes.size();) {
        const qsizetype lineFeed = bytes.indexOf('\n', start);
        const qsizetype end = lineFeed < 0 ? bytes.size() : lineFeed + 1;
        const QByteArrayView line = QByteArrayView(bytes).sliced(start, end - start);
        const QByteArrayView key = line.first(std::max<qsizetype>(0, line.indexOf('=')));
        const qsizetype language = key.indexOf('[');
        if (language <= 0 || key.first(language) == translatedKey) kept.append(line);
        start = end;
    }
    return kept;
}

}  // namespace

void KeyFile::Release::operator()(_GKeyFile* file) const {
    g_key_file_free(file);
}

std::optional<KeyFile> KeyFile::read(const std::filesystem::path& path, QByteArrayView translatedKey) {
    const auto bytes = readRegularFile(path, longestFile);
    if (!bytes) return {};
    const QByteArray kept = withoutTranslationsExceptOf(translatedKey, *bytes);
    if (kept.isEmpty()) return {};
    KeyFile keyFile;
    keyFile.file_.reset(g_key_file_new());
    if (!g_key_file_load_from_data(keyFile.file_.get(), kept.constData(), kept.size(), G_KEY_FILE_NONE, nullptr))
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
