#include "screens/settings/LogText.h"

#include <string>
#include <string_view>
#include <utility>

#include "store/text/Utf.h"

namespace screens {

namespace {

constexpr std::string_view lowerFirstMark = "\xFF\xFE";
constexpr std::string_view higherFirstMark = "\xFE\xFF";
constexpr std::size_t beginningSize = 4096;

// Decides on the beginning, since logs are long. UTF-16 has a zero wherever it has a character of ASCII, and a line
// without one of these is no line of a log.
bool looksLikeUtf8(std::string_view bytes) {
    const std::string_view beginning = bytes.substr(0, beginningSize);
    if (beginning.empty() || beginning.find('\0') != std::string_view::npos) return false;
    const char* const end = beginning.data() + beginning.size();
    for (const char* at = beginning.data(); at < end;) {
        const store::Utf8Character character = store::decodeUtf8(at, end);
        const bool isCutOff = bytes.size() > beginning.size() && end - at < 4;
        if (character.length == 0) return isCutOff;
        at += character.length;
    }
    return true;
}

}  // namespace

LogText::LogText(store::Buffer file) : file_(std::move(file)) {
    if (looksLikeUtf8(file_.view())) {
        *this = of(QString::fromUtf8(file_.bytes.get(), qsizetype(file_.size)));
        return;
    }
    std::string_view bytes = file_.view();
    const bool isHigherFirst = bytes.starts_with(higherFirstMark);
    if (isHigherFirst || bytes.starts_with(lowerFirstMark)) bytes.remove_prefix(lowerFirstMark.size());
    isSwapped_ = isHigherFirst != (std::endian::native == std::endian::big);
    units_ = bytes.data();
    size_ = bytes.size() / sizeof(char16_t);
}

LogText LogText::of(QStringView text) {
    LogText made;
    made.size_ = std::size_t(text.size());
    made.file_ = store::Buffer::copyOf({reinterpret_cast<const char*>(text.utf16()), made.size_ * sizeof(char16_t)});
    made.units_ = made.file_.bytes.get();
    made.isSwapped_ = false;
    return made;
}

LogText::Character LogText::surrogate(std::size_t position, char16_t first) const {
    if (QChar::isHighSurrogate(first) && position + 1 < size_) {
        const char16_t second = unit(position + 1);
        if (QChar::isLowSurrogate(second)) return {QChar::surrogateToUcs4(first, second), 2};
    }
    return {QChar::ReplacementCharacter, 1};
}

QString LogText::slice(std::size_t begin, std::size_t end) const {
    QString text(qsizetype(end - begin), Qt::Uninitialized);
    QChar* to = text.data();
    for (std::size_t at = begin; at < end;) {
        const Character next = character(at);
        const bool isWhole = next.length == 2 && at + 1 < end;
        if (isWhole) {
            *to++ = QChar(unit(at));
            *to++ = QChar(unit(at + 1));
            at += 2;
        } else {
            *to++ = next.length == 1 ? QChar(char16_t(next.code)) : QChar(QChar::ReplacementCharacter);
            ++at;
        }
    }
    return text;
}

}  // namespace screens
