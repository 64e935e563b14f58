#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "screens/settings/LogText.h"

namespace screens {

class CharacterWidths;

// The rows in which a text is shown when it is wrapped softly at a width: after spaces and hyphens and around
// ideographs where there are any in the row, otherwise between any two characters. Spaces at the end of a row hang
// over its edge. A row is never longer than 1,024 units, however little room they take.
//
// One pass over the text finds the rows, in pieces at the same time where it is long; of about every 32nd the beginning
// is kept, the others are found again from there. So any row costs the same, and the memory is a small part of the
// text's.
class LogRows {
public:
    struct Row {
        std::size_t begin;
        std::size_t end;   // behind what is shown of it
        std::size_t next;  // where the next row begins: behind the line's end if there is one
    };

    // `text` and `widths` outlive the rows. Points; a tab goes on to the next multiple of `tabDistance`.
    LogRows(const LogText& text, CharacterWidths& widths, float width, float tabDistance);

    // A text has at least one row; one that ends with a line's end has an empty one behind it.
    std::size_t count() const { return count_; }
    std::vector<Row> rows(std::size_t first, std::size_t count) const;
    // The row that a position lies in.
    std::size_t rowAt(std::size_t position) const;

private:
    // A row whose beginning is kept.
    struct Mark {
        std::uint32_t row;
        std::uint32_t begin;
    };
    // Some of the text, from one line's beginning to another's or to the text's end.
    struct Piece {
        std::size_t begin;
        std::size_t end;
        std::size_t count = 0;                   // of its rows
        std::vector<std::uint32_t> begins = {};  // of its rows 0, 32, 64, ...
        bool isWrapped = false;
    };

    template <class WidthOf>
    Row rowFrom(std::size_t begin, WidthOf widthOf) const;
    Row rowFrom(std::size_t begin) const;
    template <class WidthOf>
    void wrap(Piece& piece, WidthOf widthOf) const;
    void measureAndWrap(Piece& piece);
    void wrapAsMeasured(Piece& piece) const;
    void wrapTogether(std::vector<Piece>& pieces) const;
    std::vector<Piece> pieces() const;
    bool isLast(const Row& row) const;

    const LogText& text_;
    CharacterWidths& widths_;
    float width_;
    float tabDistance_;
    std::size_t count_ = 0;
    std::vector<Mark> marks_;
};

}  // namespace screens
