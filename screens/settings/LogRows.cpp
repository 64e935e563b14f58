#include "screens/settings/LogRows.h"

#include <algorithm>
#include <cmath>

#include "screens/settings/CharacterWidths.h"

namespace screens {

namespace {

constexpr std::size_t longestRow = 1024;
constexpr std::size_t rowsPerBegin = 32;
constexpr char32_t firstIdeograph = 0x2E80;

bool isLineEnd(char32_t character) {
    return character == '\n' || character == '\r' || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

bool isSpace(char32_t character) {
    return character == ' ' || character == '\t';
}

}  // namespace

LogRows::LogRows(const LogText& text, CharacterWidths& widths, float width, float tabDistance)
    : text_(text), widths_(widths), width_(width), tabDistance_(tabDistance) {
    for (std::size_t begin = 0;;) {
        if (count_ % rowsPerBegin == 0) begins_.push_back(std::uint32_t(begin));
        ++count_;
        const Row row = rowFrom(begin);
        if (isLast(row)) return;
        begin = row.next;
    }
}

bool LogRows::isLast(const Row& row) const {
    const bool endsWithLine = row.end < row.next;
    return row.next == text_.size() && !endsWithLine;
}

LogRows::Row LogRows::rowFrom(std::size_t begin) const {
    std::size_t breakAt = begin;  // the last place where the row may end, if it is behind the beginning
    float x = 0;
    std::size_t at = begin;
    while (at < text_.size()) {
        const auto [code, length] = text_.character(at);
        if (at - begin + length > longestRow) break;
        if (isLineEnd(code)) {
            const bool isPair = code == '\r' && at + 1 < text_.size() && text_.unit(at + 1) == '\n';
            return {begin, at, at + (isPair ? 2 : 1)};
        }
        const float advance = code == '\t' ? (std::floor(x / tabDistance_) + 1) * tabDistance_ - x : widths_.of(code);
        if (code >= firstIdeograph && advance > 0) breakAt = at;
        if (x + advance > width_ && at > begin && advance > 0 && !isSpace(code)) {
            const std::size_t end = breakAt > begin ? breakAt : at;
            return {begin, end, end};
        }
        x += advance;
        at += length;
        if (isSpace(code) || code == '-' || code >= firstIdeograph) breakAt = at;
    }
    return {begin, at, at};
}

std::vector<LogRows::Row> LogRows::rows(std::size_t first, std::size_t count) const {
    std::vector<Row> found;
    if (first >= count_) return found;
    const std::size_t kept = first / rowsPerBegin;
    std::size_t begin = begins_[kept];
    for (std::size_t each = kept * rowsPerBegin; each < first; ++each) begin = rowFrom(begin).next;
    for (std::size_t each = first; each < std::min(first + count, count_); ++each) {
        found.push_back(rowFrom(begin));
        begin = found.back().next;
    }
    return found;
}

std::size_t LogRows::rowAt(std::size_t position) const {
    const auto behind = std::upper_bound(begins_.begin() + 1, begins_.end(), position);
    auto row = std::size_t(behind - begins_.begin() - 1) * rowsPerBegin;
    for (std::size_t begin = *(behind - 1); row + 1 < count_; ++row) {
        begin = rowFrom(begin).next;
        if (begin > position) break;
    }
    return row;
}

}  // namespace screens
