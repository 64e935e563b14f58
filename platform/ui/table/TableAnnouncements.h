#pragma once

#include <QAccessible>

namespace platform {

class TableView;

// What the table needs of its accessible interface, which a higher floor installs: access to the interfaces of its
// rows. Where none is installed, nothing is announced.
class TableReader {
public:
    TableReader() = default;
    virtual ~TableReader() = default;
    TableReader(const TableReader&) = delete;
    TableReader& operator=(const TableReader&) = delete;

    // The list whose children are the rows of all sections, by position. Owned by this object.
    virtual QAccessibleInterface* rows() const = 0;
};

// The accessibility events of a table. Without an active screen reader a call costs one test. `position` is the row's
// index through all sections. Main thread only.
namespace TableAnnouncements {

void rowsChanged(TableView& table);
void rowFocused(TableView& table, int position);
void rowToggled(TableView& table, int position);
void rowDescribed(TableView& table, int position);

}  // namespace TableAnnouncements

}  // namespace platform
