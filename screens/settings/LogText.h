#pragma once

#include <QString>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "store/files/Buffer.h"

namespace screens {

// The text of a log: the file's UTF-16 as it was read, made into strings piece by piece. A byte-order mark says which
// byte comes first and is not part of the text; without one the lower byte does. Half a unit at the end is dropped, a
// surrogate without its partner reads as U+FFFD, so that every file is a text: to show most of a log that was cut short
// is kinder than to show nothing. A file that does not look like UTF-16 at all but like UTF-8 is converted. Positions
// count UTF-16 units.
class LogText {
public:
    LogText() = default;
    explicit LogText(store::Buffer file);
    static LogText of(QStringView text);

    std::size_t size() const { return size_; }

    char16_t unit(std::size_t position) const {
        std::uint16_t unit = 0;
        std::memcpy(&unit, units_ + position * sizeof unit, sizeof unit);
        return static_cast<char16_t>(isSwapped_ ? static_cast<std::uint16_t>(unit << 8 | unit >> 8) : unit);
    }

    // The character at a position, and how many units it takes.
    struct Character {
        char32_t code;
        std::size_t length;
    };
    Character character(std::size_t position) const {
        const char16_t first = unit(position);
        if (!QChar::isSurrogate(first)) return {first, 1};
        return surrogate(position, first);
    }

    QString slice(std::size_t begin, std::size_t end) const;

private:
    Character surrogate(std::size_t position, char16_t first) const;

    store::Buffer file_;
    const char* units_ = nullptr;
    std::size_t size_ = 0;
    bool isSwapped_ = std::endian::native != std::endian::little;
};

}  // namespace screens
