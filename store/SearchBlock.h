#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace store {

// The lowered texts of a list's rows in one block, which is searched from end to end as one text.
class SearchBlock {
public:
    SearchBlock(std::size_t count, const std::function<std::string_view(std::size_t)>& textOf);

    // The rows whose text matches, ascending; see SearchText. A text that goes on where the last one ended is looked
    // for in the last answer only.
    const std::vector<std::uint32_t>& search(std::string_view text);

private:
    std::vector<std::uint32_t> searchAll(std::string_view lowered) const;
    bool matches(std::uint32_t row, std::string_view lowered) const;

    std::string block_;
    std::vector<std::size_t> begins_;  // of each row's text in the block, and where the next one would be
    std::string lastText_;
    std::vector<std::uint32_t> lastAnswer_;
};

}  // namespace store
