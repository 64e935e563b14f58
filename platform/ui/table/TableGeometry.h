#pragma once

#include <utility>
#include <vector>

#include "platform/ui/table/IndexPath.h"

namespace platform {

// Vertical positions of rows and footers, in points from the top of the content: a header, then for each section rows
// of equal height and a footer. Every query costs O(sections), independent of the number of rows.
class TableGeometry {
public:
    void clear();
    void appendSection(int rows, int rowHeight, int footerHeight);
    void setHeaderHeight(int height) { headerHeight_ = height; }
    void setRowHeight(int section, int height);
    void changeRowCount(int section, int difference) { sections_[section].rows += difference; }

    int sectionCount() const { return static_cast<int>(sections_.size()); }
    int rowCount(int section) const { return sections_[section].rows; }
    bool contains(IndexPath path) const;
    int contentHeight() const;

    int rowTop(IndexPath path) const;
    int rowHeight(int section) const { return sections_[section].rowHeight; }
    int footerTop(int section) const;
    int footerHeight(int section) const { return sections_[section].footerHeight; }

    // Ordinals: row indexes through all sections, from 0.
    int totalRows() const;
    int ordinal(IndexPath path) const;
    IndexPath atOrdinal(int ordinal) const;

    // The ordinals [first, last) of the rows that intersect the points [top, bottom).
    std::pair<int, int> rowsBetween(int top, int bottom) const;

private:
    struct Section {
        int rows;
        int rowHeight;
        int footerHeight;
        int height() const { return rows * rowHeight + footerHeight; }
    };

    int sectionTop(int section) const;

    std::vector<Section> sections_;
    int headerHeight_ = 0;
};

}  // namespace platform
