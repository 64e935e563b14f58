#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/plist/PropertyList.h"
#include "store/sorting/LargeVector.h"

namespace store {

class XmlWriter;

// The entries of a rule list in a compact form: 16 bytes for each entry, all texts in one pool. An entry's index never
// changes.
//
// An entry is plain when it has a rule that is a string, perhaps a date, and no other key. Other entries keep their XML
// text besides, and so do foreign elements: those that are no dictionaries.
class RuleStorage {
public:
    using Index = std::uint32_t;

    // Reads an array. Of entries with equal rules only the first is kept; entries without a rule that is a string are
    // never equal.
    static RuleStorage read(const Slice& array);

    std::size_t size() const { return entries_.size(); }
    // This many bytes behind a rule may be read; their values do not matter.
    static constexpr std::size_t readable = 32;
    std::string_view rule(Index index) const {
        const Entry& entry = entries_[index];
        return {pool_.data() + entry.offset, entry.size};
    }
    std::optional<Date> date(Index index) const;
    // A sort key: larger for later dates, smallest without a date.
    std::int64_t dateOrder(Index index) const { return entries_[index].date; }
    // The indices of all entries equal to this one in all keys, itself included, ascending. A linear scan of memory.
    std::vector<Index> equalTo(Index index) const;

    Index add(std::string_view rule, Date date);
    void replace(Index index, std::string_view rule, Date date);

    // Writes the elements of an array: the entries with these indices in this order, then the foreign elements.
    void write(XmlWriter& writer, const std::vector<Index>& indices) const;
    std::size_t foreignCount() const { return foreign_.size(); }

private:
    friend class RuleReader;
    static constexpr std::int64_t noDate = INT64_MIN;

    struct Range {
        std::uint32_t offset = 0;
        std::uint32_t size = 0;
    };
    struct Entry {
        std::uint32_t offset;
        std::uint32_t size : 30;
        std::uint32_t hasRule : 1;
        std::uint32_t isPlain : 1;
        std::int64_t date;
    };
    struct Original {
        Index index;
        Range text;
    };

    std::string_view at(Range part) const { return {pool_.data() + part.offset, part.size}; }
    bool areEqual(Index a, Index b) const;
    // Makes room for texts at the end of the pool. Returns its offset.
    std::size_t extend(std::size_t size);
    Range keep(std::string_view text);
    static Entry plainEntry(Range rule, std::int64_t date);
    Entry plainEntry(std::string_view rule, std::int64_t date);
    std::string_view original(Index index) const;
    LargeVector<std::uint32_t> hashes() const;
    template <class IsOfPart>
    void markDuplicates(const LargeVector<std::uint32_t>& hashes, IsOfPart isOfPart,
                        LargeVector<char>& isDuplicate) const;
    // By entry: whether an earlier one has the same rule.
    LargeVector<char> duplicates() const;
    void removeDuplicates();

    LargeVector<char> pool_ = LargeVector<char>(readable);  // the texts, then the bytes behind the last one
    LargeVector<Entry> entries_;
    std::vector<Original> originals_;  // the XML of entries that were not plain when read, ascending by index
    std::vector<Range> foreign_;
};

}  // namespace store
