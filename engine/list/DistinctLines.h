#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

// A text of lines no two of which are equal, in the order in which they were added. An open-addressing hash table finds
// repeated ones: 11 to 22 bytes for each line beside the text, and no allocation for a line. One thread at a time.
class DistinctLines {
public:
    // Expects about as much text as the size says: memory that stays unused is never touched.
    explicit DistinctLines(std::size_t expectedSize);

    // Returns false when the line, which holds no line feed, is there already. All lines together may take a terabyte.
    bool add(std::string_view line);

    // The lines, separated by line feeds; nothing may be added afterwards.
    std::string take();

private:
    std::uint64_t& slotOf(std::string_view line, std::uint64_t hash);
    bool isAt(std::uint64_t slot, std::string_view line) const;
    void grow();

    std::string text_;                  // each line is followed by a line feed
    std::vector<std::uint64_t> slots_;  // a power of two; 0: empty
    std::size_t count_ = 0;
};

}  // namespace engine
