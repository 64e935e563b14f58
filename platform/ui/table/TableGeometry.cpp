#include "platform/ui/table/TableGeometry.h"

#include <algorithm>

namespace platform {

void TableGeometry::clear() {
    sections_.clear();
    headerHeight_ = 0;
}

void TableGeometry::appendSection(int rows, int rowHeight, int footerHeight) {
    sections_.push_back({std::max(0, rows), std::max(1, rowHeight), std::max(0, footerHeight)});
}

void TableGeometry::setRowHeight(int section, int height) {
    sections_[section].rowHeight = std::max(1, height);
}

bool TableGeometry::contains(IndexPath path) const {
    return path.section >= 0 && path.section < sectionCount() && path.row >= 0 && path.row < rowCount(path.section);
}

int TableGeometry::contentHeight() const {
    return sectionTop(sectionCount());
}

int TableGeometry::rowTop(IndexPath path) const {
    return sectionTop(path.section) + path.row * sections_[path.section].rowHeight;
}

int TableGeometry::footerTop(int section) const {
    return rowTop({section, rowCount(section)});
}

int TableGeometry::totalRows() const {
    int total = 0;
    for (const Section& section : sections_) total += section.rows;
    return total;
}

int TableGeometry::ordinal(IndexPath path) const {
    int before = 0;
    for (int s = 0; s < path.section; ++s) before += sections_[s].rows;
    return before + path.row;
}

IndexPath TableGeometry::atOrdinal(int ordinal) const {
    int section = 0;
    while (ordinal >= sections_[section].rows) ordinal -= sections_[section++].rows;
    return {section, ordinal};
}

std::pair<int, int> TableGeometry::rowsBetween(int top, int bottom) const {
    int first = 0;
    int last = 0;
    int sectionY = headerHeight_;
    for (const Section& section : sections_) {
        const int above = top - sectionY;
        const int below = bottom - sectionY;
        first += above <= 0 ? 0 : std::min(section.rows, above / section.rowHeight);
        last += below <= 0 ? 0 : std::min(section.rows, (below - 1) / section.rowHeight + 1);
        sectionY += section.height();
    }
    return {std::min(first, last), last};
}

int TableGeometry::sectionTop(int section) const {
    int top = headerHeight_;
    for (int s = 0; s < section; ++s) top += sections_[s].height();
    return top;
}

}  // namespace platform
