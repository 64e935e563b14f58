#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/plist/PropertyList.h"
#include "store/sorting/LargeVector.h"

namespace store {

class NameOrder;

enum class RuleOrder { name, date };

// A list of host rules as a screen shows it: made for a million of them. Positions are rows, counted from 0.
//
// The texts are held once. An entry's keys other than `rule` and `date` are kept and written back as they stand, and so
// is what is wrong with an entry (no rule, a number for a rule, no date) until a person edits that entry.
// Main thread only.
class RuleList {
public:
    RuleList();
    ~RuleList();
    RuleList(RuleList&&) noexcept;
    RuleList& operator=(RuleList&&) noexcept;

    // Reads the array of a file, in stored order, keeping the first of entries whose rules are equal to the byte.
    // nullptr, or a value that is no array, gives an empty list.
    static RuleList load(const Value* array);

    std::size_t size() const;
    // "" for an entry without a rule that is a string. Valid until the list changes.
    std::string_view rule(std::size_t position) const;
    std::optional<Date> date(std::size_t position) const;

    // Whether the list is as sort() or add() left it: removing does not change that, replacing does.
    bool isSorted(RuleOrder by) const;
    // Sorts by name (ascending) or date (newest first, entries without one last). Equal names keep their order; of
    // equal dates what was changed last comes first, then what was read, in stored order.
    void sort(RuleOrder by, const NameOrder& order);

    // Adds an entry where it belongs in a list that is sorted that way, behind equal names or before equal dates;
    // returns its position.
    std::size_t add(std::string_view rule, Date date, RuleOrder by, const NameOrder& order);
    // Replaces the rule and date of an entry in its place.
    void replace(std::size_t position, std::string_view rule, Date date);
    void remove(std::size_t position);
    // Removes every entry that is equal to this one in all its keys; returns their positions, ascending.
    std::vector<std::size_t> removeEqual(std::size_t position);
    void clear();

    // What the first search since a text changed would begin with.
    void prepareSearch();
    // Positions of the entries that match, in list order.
    LargeVector<std::uint32_t> search(std::string_view text) const;

    // The whole list in its present order, to be stored in a file. The value refers to this list: write it before
    // the list changes or goes.
    Value value() const;

private:
    struct Private;
    std::unique_ptr<Private> d_;
};

}  // namespace store
