#pragma once

#include <compare>
#include <tuple>

namespace platform {

// The position of a row in a table: section and row index, both from 0.
struct IndexPath {
    int section = 0;
    int row = 0;

    bool operator==(const IndexPath&) const = default;
    auto operator<=>(const IndexPath& other) const {
        return std::tie(section, row) <=> std::tie(other.section, other.row);
    }
};

}  // namespace platform
