#pragma once

#include <compare>

namespace platform {

// The position of a row in a table: section and row index, both from 0.
struct IndexPath {
    int section = 0;
    int row = 0;

    auto operator<=>(const IndexPath&) const = default;
};

}  // namespace platform
