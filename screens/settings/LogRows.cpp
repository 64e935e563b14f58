#include "screens/settings/LogRows.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <new>

#include "screens/settings/CharacterWidths.h"
#include "store/parallel/Parts.h"

namespace screens {

namespace {

constexpr std::size_t longestRow = 1024;
constexpr std::size_t rowsPerMark = 32;
constexpr std::size_t pieceSize = store::partSize(std::size_t{1} << 20);  // units at least
constexpr std::size_t piecesWorthwhile = 2;                               // for a thread of their own
constexpr char32_t firstIdeograph = 0x2E80;

// A line does not break before or behind it, unless there is no other place.
bool isLetter(char16_t unit) {
    return unit > '-' && unit < QChar::LineSeparator;
}

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
    std::vector<Piece> found = pieces();
    measureAndWrap(found.front());  // as a rule this meets every character that there is
    wrapTogether(found);
    for (Piece& piece : found) {
        if (!piece.isWrapped) measureAndWrap(piece);
        for (std::size_t each = 0; each < piece.begins.size(); ++each)
            marks_.push_back({std::uint32_t(count_ + each * rowsPerMark), piece.begins[each]});
        count_ += piece.count;
    }
}

std::vector<LogRows::Piece> LogRows::pieces() const {
    std::vector<Piece> found;
    std::size_t begin = 0;
    for (std::size_t at = pieceSize; at < text_.size(); ++at) {
        if (text_.unit(at) != '\n') continue;
        found.push_back({begin, at + 1});
        begin = at + 1;
        at += pieceSize;
    }
    if (found.empty() || begin < text_.size()) found.push_back({begin, text_.size()});
    return found;
}

// On as many threads as pay off, and without what these must not do: a piece for which something is still to be
// measured, or for which there is no memory, is left.
void LogRows::wrapTogether(std::vector<Piece>& pieces) const {
    std::atomic<std::size_t> next = 1;
    store::inAll(store::partsWorthwhile(pieces.size(), piecesWorthwhile), [&](std::size_t) {
        for (std::size_t each = next++; each < pieces.size(); each = next++) wrapAsMeasured(pieces[each]);
    });
}

void LogRows::wrapAsMeasured(Piece& piece) const {
    bool isMeasured = true;
    try {
        wrap(piece, [&](char32_t character) {
            const float width = widths_.measured(character);
            isMeasured = isMeasured && width >= 0;
            return width;
        });
        piece.isWrapped = isMeasured;
    } catch (const std::bad_alloc&) {
        return;
    }
}

void LogRows::measureAndWrap(Piece& piece) {
    wrap(piece, [this](char32_t character) { return widths_.of(character); });
    piece.isWrapped = true;
}

template <class WidthOf>
void LogRows::wrap(Piece& piece, WidthOf widthOf) const {
    piece.count = 0;
    piece.begins.clear();
    for (std::size_t begin = piece.begin;;) {
        if (piece.count % rowsPerMark == 0) piece.begins.push_back(std::uint32_t(begin));
        ++piece.count;
        const Row row = rowFrom(begin, widthOf);
        const bool isBehindLine = row.next == piece.end && piece.end < text_.size();
        if (isBehindLine || isLast(row)) return;
        begin = row.next;
    }
}

bool LogRows::isLast(const Row& row) const {
    const bool endsWithLine = row.end < row.next;
    return row.next == text_.size() && !endsWithLine;
}

LogRows::Row LogRows::rowFrom(std::size_t begin) const {
    return rowFrom(begin, [this](char32_t character) { return widths_.of(character); });
}

template <class WidthOf>
LogRows::Row LogRows::rowFrom(std::size_t begin, WidthOf widthOf) const {
    const std::size_t limit = std::min(text_.size(), begin + longestRow);
    std::size_t breakAt = begin;  // the last place where the row may end, if it is behind the beginning
    float x = 0;
    std::size_t at = begin;
    const auto endedBefore = [&](std::size_t place) {
        const std::size_t end = breakAt > begin ? breakAt : place;
        return Row{begin, end, end};
    };
    while (at < limit) {
        // Most characters are of this kind, which has a width and nothing else.
        if (const char16_t unit = text_.unit(at); isLetter(unit)) {
            const float advance = widthOf(unit);
            if (x + advance > width_ && at > begin && advance > 0) return endedBefore(at);
            x += advance;
            ++at;
            continue;
        }
        const auto [code, length] = text_.character(at);
        if (at + length > limit) break;
        if (isLineEnd(code)) {
            const bool isPair = code == '\r' && at + 1 < text_.size() && text_.unit(at + 1) == '\n';
            return {begin, at, at + (isPair ? 2 : 1)};
        }
        const float advance = code == '\t' ? (std::floor(x / tabDistance_) + 1) * tabDistance_ - x : widthOf(code);
        if (code >= firstIdeograph && advance > 0) breakAt = at;
        if (x + advance > width_ && at > begin && advance > 0 && !isSpace(code)) return endedBefore(at);
        x += advance;
        at += length;
        if (isSpace(code) || code == '-' || code >= firstIdeograph) breakAt = at;
    }
    return {begin, at, at};
}

std::vector<LogRows::Row> LogRows::rows(std::size_t first, std::size_t count) const {
    std::vector<Row> found;
    if (first >= count_) return found;
    const auto behind = std::ranges::upper_bound(marks_, first, {}, &Mark::row);
    std::size_t begin = (behind - 1)->begin;
    for (std::size_t each = (behind - 1)->row; each < first; ++each) begin = rowFrom(begin).next;
    for (std::size_t each = first; each < std::min(first + count, count_); ++each) {
        found.push_back(rowFrom(begin));
        begin = found.back().next;
    }
    return found;
}

std::size_t LogRows::rowAt(std::size_t position) const {
    const auto behind = std::ranges::upper_bound(marks_.begin() + 1, marks_.end(), position, {}, &Mark::begin);
    std::size_t row = (behind - 1)->row;
    for (std::size_t begin = (behind - 1)->begin; row + 1 < count_; ++row) {
        begin = rowFrom(begin).next;
        if (begin > position) break;
    }
    return row;
}

}  // namespace screens
