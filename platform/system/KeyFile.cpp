#include "platform/system/KeyFile.h"

#include <glib.h>

#include <algorithm>
#include <span>
#include <string>

#include "platform/system/RegularFile.h"

namespace platform {

namespace {

constexpr qint64 longestFile = 1 << 20;

QString takeString(gchar* text) {
    QString string = QString::fromUtf8(text);
    g_free(text);
    return string;
}

// The languages of the process's locale, the preferred one first.
std::span<const char* const> languages() {
    const gchar* const* names = g_get_language_names();
    return {names, g_strv_length(const_cast<gchar**>(names))};
}

// Whether a key is no translation, or the wanted one's into one of the languages.
bool isOfUse(QByteArrayView key, QByteArrayView translatedKey, std::span<const char* const> languages) {
    const qsizetype bracket = key.indexOf('[');
    if (bracket <= 0) return true;
    if (key.first(bracket) != translatedKey || !key.endsWith(']')) return false;
    const QByteArrayView language = key.sliced(bracket + 1).chopped(1);
    return std::ranges::any_of(languages, [&](const char* name) { return language == QByteArrayView(name); });
}

// Most of a desktop entry is translations: not parsing them makes reading it several times as fast.
QByteArray withoutTranslationsExceptOf(QByteArrayView translatedKey, const QByteArray& bytes) {
    const std::span<const char* const> wanted = languages();
    QByteArray kept;
    kept.reserve(bytes.size());
    for (qsizetype start = 0; start < bytes.size();) {
        const qsizetype lineFeed = bytes.indexOf('\n', start);
        const qsizetype end = lineFeed < 0 ? bytes.size() : lineFeed + 1;
        const QByteArrayView line = QByteArrayView(bytes).sliced(start, end - start);
        const QByteArrayView text = line.trimmed();
        const QByteArrayView key = text.first(std::max<qsizetype>(0, text.indexOf('='))).trimmed();
        if (isOfUse(key, translatedKey, wanted)) kept.append(line);
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

// Asked before a key is: for one that is not there a message is made up, in the user's language, that nobody reads.
bool KeyFile::has(const char* group, const char* key) const {
    return g_key_file_has_key(file_.get(), group, key, nullptr);
}

QString KeyFile::string(const char* group, const char* key) const {
    if (!has(group, key)) return {};
    return takeString(g_key_file_get_string(file_.get(), group, key, nullptr));
}

QString KeyFile::localizedString(const char* group, const char* key) const {
    for (const char* language : languages()) {
        QString translation = string(group, (std::string(key) + '[' + language + ']').c_str());
        if (!translation.isNull()) return translation;  // null where it is not there, or no UTF-8
    }
    return string(group, key);
}

QStringList KeyFile::commaSeparatedList(const char* group, const char* key) const {
    QStringList list;
    for (const QString& item : string(group, key).split(u',', Qt::SkipEmptyParts)) list.append(item.trimmed());
    return list;
}

bool KeyFile::boolean(const char* group, const char* key) const {
    return has(group, key) && g_key_file_get_boolean(file_.get(), group, key, nullptr);
}

int KeyFile::integer(const char* group, const char* key, int otherwise) const {
    GError* error = nullptr;
    const int value = g_key_file_get_integer(file_.get(), group, key, &error);
    if (!error) return value;
    g_error_free(error);
    return otherwise;
}

}  // namespace platform
