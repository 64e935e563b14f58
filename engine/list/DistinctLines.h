#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

// A text of lines no two of which are equal, in the order in which they were first added. An open-addressing hash table
// finds repeated ones: 11 to 22 bytes for each line beside the text, and no allocation for a line. Lines are looked up
// in batches, after their slots were prefetched: one by one, waiting for memory is a quarter of the time that a hosts
// file takes. One thread at a time.
class DistinctLines {
public:
    // Expects about as much text as the size says: memory that stays unused is never touched.
    explicit DistinctLines(std::size_t expectedSize);

    // A line holds no line feed. All lines together may take a terabyte.
    void add(std::string_view line);

    struct Result {
        std::string text;  // the lines, separated by line feeds
        std::size_t count = 0;
        std::size_t repeated = 0;
    };
    // Nothing may be added afterwards.
    Result take();

private:
    struct Pending {
        std::uint64_t hash;
        std::size_t offset;  // in pendingText_
        std::size_t size;
    };

    void resolve();
    void insert(std::string_view line, std::uint64_t hash);
    bool isAt(std::uint64_t slot, std::string_view line) const;
    void grow();

    std::string text_;                  // each line is followed by a line feed
    std::vector<std::uint64_t> slots_;  // a power of two; 0: empty
    std::size_t count_ = 0;
    std::size_t repeated_ = 0;
    std::string pendingText_;
    std::vector<Pending> pending_;
};

}  // namespace engine
