#pragma once

#include "store/plist/PropertyList.h"

namespace testing_support {

// An array of rule entries without dates, as the files hold them.
template <typename Rules>
store::Value entries(const Rules& rules) {
    store::Array array;
    for (const auto& rule : rules) {
        store::Dictionary entry;
        entry.set("rule", store::Value(rule));
        array.emplace_back(std::move(entry));
    }
    return store::Value(std::move(array));
}

}  // namespace testing_support
