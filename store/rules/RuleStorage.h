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

// The entries of a rule list, each known by a number that it keeps: sixteen bytes an entry, and all texts in one pool.
//
// An entry is plain when it is a rule that is a string and perhaps a date, and nothing else. What else there may be is
// kept as the text that it was read from, and so are elements that are no entries at all.
class RuleStorage {
public:
    using Number = std::uint32_t;

    // The elements of an array's slice; of entries with equal rules the first only. An entry without a rule that is a
    // string is like no other.
    static RuleStorage read(const Slice& array);

    std::size_t size() const { return entries_.size(); }
    // All texts, those of the rules among them.
    std::string_view pool() const { return {pool_.data(), pool_.size()}; }
    std::string_view rule(Number number) const {
        const Entry& entry = entries_[number];
        return {pool_.data() + entry.offset, entry.size};
    }
    std::optional<Date> date(Number number) const;
    // Later dates are larger; no date is smaller than any.
    std::int64_t dateOrder(Number number) const { return entries_[number].date; }
    // Every entry that is equal to this one in all its keys, itself among them, ascending. In the order in which
    // entries lie in memory a million are gone through in no time.
    std::vector<Number> equalTo(Number number) const;

    Number add(std::string_view rule, Date date);
    void replace(Number number, std::string_view rule, Date date);

    // What a list consists of, as elements of an array: entries in this order, then the elements that are no entries.
    void write(XmlWriter& writer, const std::vector<Number>& numbers) const;
    std::size_t foreignCount() const { return foreign_.size(); }

private:
    friend class RuleReader;
    static constexpr std::int64_t noDate = INT64_MIN;

    struct Part {
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
        Number number;
        Part text;
    };

    std::string_view at(Part part) const { return {pool_.data() + part.offset, part.size}; }
    bool areEqual(Number a, Number b) const;
    Part keep(std::string_view text);
    static Entry plainEntry(Part rule, std::int64_t date);
    Entry plainEntry(std::string_view rule, std::int64_t date);
    std::string_view original(Number number) const;
    LargeVector<std::uint32_t> hashes() const;
    template <class IsOfPart>
    void markRepeated(const LargeVector<std::uint32_t>& hashes, IsOfPart isOfPart, LargeVector<char>& isRepeated) const;
    // For each entry, whether an earlier one has its rule.
    LargeVector<char> repeated() const;
    void dropRepeated();

    LargeVector<char> pool_;
    LargeVector<Entry> entries_;
    std::vector<Original> originals_;  // the texts of entries that were not plain when they were read, by number
    std::vector<Part> foreign_;
};

}  // namespace store
