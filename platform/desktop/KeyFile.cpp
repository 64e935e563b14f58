#include "platform/desktop/KeyFile.h"

#include <glib.h>

#include <algorithm>
#include <string>

#include "platform/desktop/RegularFile.h"

namespace platform {

namespace {

QString takeString(gchar* text) {
    QString string = QString::fromUtf8(text);
    g_free(text);
    return string;
}

// The languages of the process's locale, in order of preference.
std::span<const char* const> languages() {
    const gchar* const* names = g_get_language_names();
    return {names, g_strv_length(const_cast<gchar**>(names))};
}

bool isTranslationIntoOneOf(std::span<const char* const> languages, std::string_view bracketed) {
    return std::ranges::any_of(languages, [&](std::string_view name) {
        return bracketed.starts_with(name) && bracketed.substr(name.size()).starts_with(']');
    });
}

// Lines that are neither group nor key are kept, so that the parser rejects an invalid file.
bool isOfUse(std::string_view line, std::span<const std::string_view> keys, std::span<const char* const> languages) {
    const auto skipBlanks = [](std::string_view text) {
        return text.substr(std::min(text.find_first_not_of(" \t\n\f\r"), text.size()));  // the parser's white space
    };
    const std::string_view text = skipBlanks(line);
    if (text.starts_with('[')) return true;
    for (const std::string_view key : keys) {
        if (!text.starts_with(key)) continue;
        const std::string_view rest = skipBlanks(text.substr(key.size()));
        if (rest.starts_with('=')) return true;
        if (rest.starts_with('[')) return isTranslationIntoOneOf(languages, rest.substr(1));
    }
    return text.find('=') == text.npos;
}

// Drops unused keys and translations, which are most of a desktop entry, before the parser sees them: several times as
// fast.
std::string onlyLinesOfUse(std::string_view bytes, std::span<const std::string_view> keys) {
    const std::span<const char* const> wanted = languages();
    std::string kept;
    for (std::size_t start = 0; start < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', start), bytes.size() - 1) + 1;
        const std::string_view line = bytes.substr(start, end - start);
        if (isOfUse(line, keys, wanted)) kept += line;
        start = end;
    }
    return kept;
}

}  // namespace

void KeyFile::Release::operator()(_GKeyFile* file) const {
    g_key_file_free(file);
}

std::optional<KeyFile> KeyFile::read(const std::filesystem::path& path) {
    const auto bytes = readRegularFile(path, longestFile);
    if (!bytes) return {};
    return parse({bytes->constData(), std::size_t(bytes->size())});
}

std::optional<KeyFile> KeyFile::parse(std::string_view text, std::span<const std::string_view> keys) {
    const std::string kept = keys.empty() ? std::string(text) : onlyLinesOfUse(text, keys);
    if (kept.empty()) return {};
    KeyFile keyFile;
    keyFile.file_.reset(g_key_file_new());
    if (!g_key_file_load_from_data(keyFile.file_.get(), kept.data(), kept.size(), G_KEY_FILE_NONE, nullptr)) return {};
    return keyFile;
}

// Checked before each access: for a missing key glib would format a translated error message.
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
        if (!translation.isNull()) return translation;  // null: missing or invalid UTF-8
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
