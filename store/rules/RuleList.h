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

// The list of host rules behind a screen, for up to a million entries. Positions are rows, counted from 0.
//
// Keys other than `rule` and `date` are preserved, and so are malformed entries (no rule, a rule that is no string, no
// date) until the user edits the entry. Main thread only.
class RuleList {
public:
    RuleList();
    ~RuleList();
    RuleList(RuleList&&) noexcept;
    RuleList& operator=(RuleList&&) noexcept;

    // Reads an array in stored order. Of entries with equal rules, compared by bytes, only the first is kept. nullptr,
    // or a value that is no array, gives an empty list.
    static RuleList load(const Value* array);

    std::size_t size() const;
    // "" where the entry has no rule or one that is no string. Valid until the list changes.
    std::string_view rule(std::size_t position) const;
    std::optional<Date> date(std::size_t position) const;

    // Whether the rows are known to be in this order: true after sort() and add(), false after replace().
    bool isSorted(RuleOrder by) const;
    // Sorts by name (ascending, stable) or by date (newest first, entries without one last). Of equal dates, the entry
    // changed last comes first, then those that were read, in stored order.
    void sort(RuleOrder by, const NameOrder& order);

    // Sorts the list if necessary and inserts an entry, behind equal names or before equal dates. Returns its position.
    std::size_t add(std::string_view rule, Date date, RuleOrder by, const NameOrder& order);
    // Replaces rule and date of an entry. Its position does not change.
    void replace(std::size_t position, std::string_view rule, Date date);
    void remove(std::size_t position);
    // Removes all entries equal to this one in all keys. Returns their former positions, ascending.
    std::vector<std::size_t> removeEqual(std::size_t position);
    void clear();

    // Builds what a search needs, which the first search after a change would otherwise do.
    void prepareSearch();
    // The positions of the entries that match, ascending; see SearchText.
    LargeVector<std::uint32_t> search(std::string_view text) const;

    // The list in its current order, to be written. The value refers to this list: write it before the list changes or
    // is destroyed.
    Value value() const;

private:
    struct Private;
    std::unique_ptr<Private> d_;
};

}  // namespace store
