#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace store {

// Which texts, equal to the byte, have been seen before. The texts themselves lie with the user, who knows each by a
// number. Where a text lands depends on chance, so that no file can make all of its texts land in one place.
class TextSet {
public:
    TextSet();

    // The number goes in unless an equal text is there. `textOf` gives the text of a number that went in.
    template <class TextOf>
    bool insert(std::string_view text, std::uint32_t number, TextOf textOf) {
        if ((count_ + 1) * 2 > slots_.size()) grow();
        std::uint32_t hash = hashOf(text);
        for (std::size_t at = hash & (slots_.size() - 1);; at = (at + 1) & (slots_.size() - 1)) {
            Slot& slot = slots_[at];
            if (slot.number == none) {
                slot = {hash, number};
                ++count_;
                return true;
            }
            if (slot.hash == hash && textOf(slot.number) == text) return false;
        }
    }

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = none;
    };

    std::uint32_t hashOf(std::string_view text) const;
    void grow();

    std::vector<Slot> slots_;
    std::size_t count_ = 0;
    std::uint64_t seed_;
};

}  // namespace store
