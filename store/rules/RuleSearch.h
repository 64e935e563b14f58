#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/rules/RuleStorage.h"
#include "store/sorting/LargeVector.h"

namespace store {

// Searches the rules of a storage, which has to stay as it is as long as this is used.
//
// ASCII text is searched where it lies, without a copy. Rules with other characters, whose lower-casing may take more
// or fewer bytes, are lowered once, when this is made.
class RuleSearch {
public:
    explicit RuleSearch(const RuleStorage& storage);

    // Which of the rows, that stand for rules by their numbers, match; see SearchText. Ascending.
    LargeVector<std::uint32_t> search(std::string_view text, std::span<const RuleStorage::Number> rows) const;

private:
    class Pass;

    std::string_view lowered(std::size_t other) const;

    const RuleStorage* storage_;
    std::vector<RuleStorage::Number> others_;  // the rules with other than ASCII characters
    std::string lowered_;                      // their texts
    std::vector<std::size_t> ends_;            // of each in that
};

}  // namespace store
