#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace store {

// The lowered texts of things that are known by their numbers, in one block, which is searched from end to end as one
// text. Numbers that follow each other should have texts that lie near each other.
class SearchBlock {
public:
    // `size` is about how many bytes all texts have.
    SearchBlock(std::size_t count, std::size_t size, const std::function<std::string_view(std::size_t)>& textOf);

    // The numbers whose text matches, ascending; see SearchText. A text that goes on where the last one ended is looked
    // for in the last answer only.
    const std::vector<std::uint32_t>& search(std::string_view text);

private:
    std::vector<std::uint32_t> searchAll(std::string_view lowered) const;
    bool matches(std::uint32_t number, std::string_view lowered) const;

    std::string block_;
    std::vector<std::uint32_t> begins_;  // of each text in the block, and where the next one would be
    std::string lastText_;
    std::vector<std::uint32_t> lastAnswer_;
};

}  // namespace store
