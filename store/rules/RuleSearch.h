#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/rules/RuleStorage.h"
#include "store/sorting/LargeVector.h"

namespace store {

// Searches the rules of a storage, which must not change in the meantime.
//
// ASCII rules are searched in place, sixteen bytes at a time. Rules with other characters, whose lower-cased form may
// differ in length, are copied and lowered by the constructor.
class RuleSearch {
public:
    explicit RuleSearch(const RuleStorage& storage);

    // `rows` holds indices of rules. Returns the positions in `rows` of those that match, ascending; see SearchText.
    LargeVector<std::uint32_t> search(std::string_view text, std::span<const RuleStorage::Index> rows) const;

private:
    // By rule: 1 where it matches. Bytes, as storing a bit would take a branch.
    LargeVector<std::uint8_t> matches(std::string_view pattern) const;
    std::string_view lowered(std::size_t other) const;

    const RuleStorage* storage_;
    std::vector<RuleStorage::Index> others_;  // rules with characters outside ASCII, ascending
    std::string lowered_;                     // their lowered texts, concatenated
    std::vector<std::size_t> ends_;           // the end offset of each
};

}  // namespace store
