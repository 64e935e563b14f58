#pragma once

#include <compare>

namespace platform {

// Where a row is in a table: section and row, both counted from 0.
struct IndexPath {
    int section = 0;
    int row = 0;

    auto operator<=>(const IndexPath&) const = default;
};

}  // namespace platform
