#include "engine/list/DistinctLines.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <utility>

namespace engine {

namespace {

// A slot holds the upper bits of a line's hash, so that few other lines are compared, and the line's offset plus one.
constexpr int offsetBits = 40;
constexpr std::uint64_t offsetMask = (std::uint64_t{1} << offsetBits) - 1;

std::uint64_t hashOf(std::string_view line) {
    return std::hash<std::string_view>()(line);
}

std::uint64_t slotValue(std::uint64_t hash, std::size_t offset) {
    return (hash & ~offsetMask) | (offset + 1);
}

}  // namespace

DistinctLines::DistinctLines(std::size_t expectedSize) {
    constexpr std::size_t bytesPerSlot = 16;
    constexpr std::size_t fewestSlots = 64;
    text_.reserve(expectedSize);
    slots_.resize(std::bit_ceil(std::max(expectedSize / bytesPerSlot, fewestSlots)));
}

void DistinctLines::add(std::string_view line) {
    constexpr std::size_t batch = 32;
    const std::uint64_t hash = hashOf(line);
    __builtin_prefetch(&slots_[hash & (slots_.size() - 1)], 1);
    pending_.push_back({hash, pendingText_.size(), line.size()});
    pendingText_ += line;
    if (pending_.size() == batch) resolve();
}

DistinctLines::Result DistinctLines::take() {
    resolve();
    if (!text_.empty()) text_.pop_back();
    return {std::move(text_), count_, repeated_};
}

void DistinctLines::resolve() {
    const std::string_view text = pendingText_;
    for (const Pending& line : pending_) insert(text.substr(line.offset, line.size), line.hash);
    pending_.clear();
    pendingText_.clear();
}

// Linear probing; a quarter of the slots stays empty.
void DistinctLines::insert(std::string_view line, std::uint64_t hash) {
    if (4 * (count_ + 1) > 3 * slots_.size()) grow();
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hash & mask;
    for (; slots_[at] != 0; at = (at + 1) & mask) {
        const bool mayBeEqual = ((slots_[at] ^ hash) & ~offsetMask) == 0;
        if (mayBeEqual && isAt(slots_[at], line)) {
            ++repeated_;
            return;
        }
    }
    slots_[at] = slotValue(hash, text_.size());
    text_ += line;
    text_ += '\n';
    ++count_;
}

bool DistinctLines::isAt(std::uint64_t slot, std::string_view line) const {
    const std::size_t offset = (slot & offsetMask) - 1;
    return text_.compare(offset, line.size(), line) == 0 && text_[offset + line.size()] == '\n';
}

// Fills a table of twice the size from the text. The old one is released first, so that both never take memory at once.
void DistinctLines::grow() {
    const std::size_t size = 2 * slots_.size();
    slots_ = std::vector<std::uint64_t>();
    slots_.resize(size);
    const std::string_view text = text_;
    for (std::size_t offset = 0; offset < text.size();) {
        const std::size_t end = text.find('\n', offset);
        const std::uint64_t hash = hashOf(text.substr(offset, end - offset));
        std::size_t at = hash & (size - 1);
        while (slots_[at] != 0) at = (at + 1) & (size - 1);
        slots_[at] = slotValue(hash, offset);
        offset = end + 1;
    }
}

}  // namespace engine
