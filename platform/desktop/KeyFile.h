#pragma once

#include <QString>
#include <QStringList>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

struct _GKeyFile;  // NOLINT(bugprone-reserved-identifier): the library's own name

namespace platform {

// A file of groups and keys in the common format of the desktop specifications: desktop entries, icon themes, settings.
class KeyFile {
public:
    static constexpr qint64 longestFile = 1 << 20;  // bytes

    // Nothing when the file cannot be read, is no regular file, is longer than longestFile or does not parse.
    static std::optional<KeyFile> read(const std::filesystem::path& path);
    // Nothing when the text does not parse. If `keys` is not empty, all other keys are skipped unparsed.
    static std::optional<KeyFile> parse(std::string_view text, std::span<const std::string_view> keys = {});

    // Missing keys, invalid UTF-8 and values of the wrong type read as empty, false or `otherwise`.
    QString string(const char* group, const char* key) const;
    QString localizedString(const char* group, const char* key) const;  // in the language of the process's locale
    QStringList commaSeparatedList(const char* group, const char* key) const;
    bool boolean(const char* group, const char* key) const;
    int integer(const char* group, const char* key, int otherwise) const;

private:
    bool has(const char* group, const char* key) const;

    struct Release {
        void operator()(_GKeyFile* file) const;
    };
    std::unique_ptr<_GKeyFile, Release> file_;
};

}  // namespace platform
