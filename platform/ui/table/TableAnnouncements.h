#pragma once

#include <QAccessible>

namespace platform {

class TableView;

// What presents a table to a screen reader, as far as the table knows of it. Where the table's accessible interface is
// one of these, its rows are told of; where none is installed, nothing is.
class TableReader {
public:
    TableReader() = default;
    virtual ~TableReader() = default;
    TableReader(const TableReader&) = delete;
    TableReader& operator=(const TableReader&) = delete;

    // The list whose children are the rows of all sections, by position. Owned by the reader.
    virtual QAccessibleInterface* rows() const = 0;
};

// What a table tells a screen reader; nothing, at no cost, when none is there. `position` counts the rows of all
// sections. Main thread only.
namespace TableAnnouncements {

void rowsChanged(TableView& table);
void rowFocused(TableView& table, int position);
void rowToggled(TableView& table, int position);
void rowDescribed(TableView& table, int position);

}  // namespace TableAnnouncements

}  // namespace platform
