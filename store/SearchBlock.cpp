#include "store/SearchBlock.h"

#include <string.h>

#include <algorithm>

#include "store/Search.h"

namespace store {

namespace {

// Between two texts: in no lowered text, since UTF-8 has no such byte.
constexpr char separator = '\xFF';

}  // namespace

SearchBlock::SearchBlock(std::size_t count, std::size_t size,
                         const std::function<std::string_view(std::size_t)>& textOf) {
    block_.reserve(size + count);
    begins_.reserve(count + 1);
    begins_.push_back(0);
    for (std::size_t number = 0; number < count; ++number) {
        appendLoweredForSearch(textOf(number), block_);
        block_.push_back(separator);
        begins_.push_back(static_cast<std::uint32_t>(block_.size()));
    }
}

const std::vector<std::uint32_t>& SearchBlock::search(std::string_view text) {
    std::string lowered = loweredForSearch(text);
    bool goesOn = !lastText_.empty() && lowered.starts_with(lastText_);
    if (goesOn)
        std::erase_if(lastAnswer_, [&](std::uint32_t number) { return !matches(number, lowered); });
    else
        lastAnswer_ = searchAll(lowered);
    lastText_ = std::move(lowered);
    return lastAnswer_;
}

std::vector<std::uint32_t> SearchBlock::searchAll(std::string_view lowered) const {
    std::vector<std::uint32_t> numbers;
    if (lowered.empty()) return numbers;
    const char* from = block_.data();
    const char* end = from + block_.size();
    std::size_t number = 0;
    while (const void* found = memmem(from, static_cast<std::size_t>(end - from), lowered.data(), lowered.size())) {
        auto at = static_cast<std::size_t>(static_cast<const char*>(found) - block_.data());
        while (begins_[number + 1] <= at) ++number;
        numbers.push_back(static_cast<std::uint32_t>(number));
        from = block_.data() + begins_[number + 1];
    }
    return numbers;
}

bool SearchBlock::matches(std::uint32_t number, std::string_view lowered) const {
    return memmem(block_.data() + begins_[number], begins_[number + 1] - begins_[number], lowered.data(),
                  lowered.size());
}

}  // namespace store
