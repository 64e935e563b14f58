#include "store/rules/RuleList.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>

#include "store/rules/RuleSearch.h"
#include "store/rules/RuleStorage.h"
#include "store/sorting/NameSort.h"
#include "store/sorting/Ordering.h"

namespace store {

using Index = RuleStorage::Index;

struct RuleList::Private {
    RuleStorage storage;
    std::vector<Index> rows;               // the entries in the order shown
    std::vector<Index> changed;            // entries added or edited, in the order of the changes
    std::optional<RuleOrder> order;        // the known order of the rows
    std::optional<RuleSearch> ruleSearch;  // built lazily, dropped when a text changes

    void textChanged(Index index, std::optional<RuleOrder> newOrder) {
        changed.push_back(index);
        order = newOrder;
        ruleSearch.reset();
    }

    void prepareSearch() {
        if (!ruleSearch) ruleSearch.emplace(storage);
    }

    // The order among equal dates, which have a resolution of a second: entries changed in this list, the last change
    // first, then those that were read, in stored order. Dates are sorted beside the indices: where they lie, each
    // comparison would miss the cache.
    void sortLatestFirst() {
        struct Dated {
            std::int64_t date;
            Index index;
        };
        std::vector<char> isLeft(storage.size());
        for (const Index index : rows) isLeft[index] = 1;
        std::vector<Dated> sorted;
        sorted.reserve(rows.size());
        const auto append = [&](Index index) {
            if (std::exchange(isLeft[index], 0)) sorted.push_back({storage.dateOrder(index), index});
        };
        std::for_each(changed.rbegin(), changed.rend(), append);
        for (Index index = 0; index < storage.size(); ++index) append(index);
        std::ranges::stable_sort(sorted, std::greater(), &Dated::date);
        std::ranges::transform(sorted, rows.begin(), &Dated::index);
    }

    void sortRows(RuleOrder by, const NameOrder& names) {
        if (by == RuleOrder::date) return sortLatestFirst();
        sortByName(
            rows, [this](Index index) { return storage.rule(index); }, names);
    }

    // The insertion point of a new entry in sorted rows.
    std::vector<Index>::iterator insertionPoint(Index added, RuleOrder by, const NameOrder& names) {
        if (by == RuleOrder::date) {
            return std::ranges::lower_bound(rows, storage.dateOrder(added), std::greater(),
                                            [this](Index index) { return storage.dateOrder(index); });
        }
        return std::upper_bound(rows.begin(), rows.end(), added,
                                [&](Index a, Index b) { return names.compare(storage.rule(a), storage.rule(b)) < 0; });
    }
};

namespace {

// Writes the rows as the elements of an array.
class RuleArray : public ArraySource {
public:
    RuleArray(const RuleStorage& storage, const std::vector<Index>& rows) : storage_(storage), rows_(rows) {}
    bool isEmpty() const override { return rows_.empty() && storage_.foreignCount() == 0; }
    void writeElements(XmlWriter& writer) const override { storage_.write(writer, rows_); }

private:
    const RuleStorage& storage_;
    const std::vector<Index>& rows_;
};

}  // namespace

RuleList::RuleList() : d_(std::make_unique<Private>()) {}
RuleList::~RuleList() = default;
RuleList::RuleList(RuleList&&) noexcept = default;
RuleList& RuleList::operator=(RuleList&&) noexcept = default;

RuleList RuleList::load(const Value* array) {
    RuleList list;
    if (!array || array->kind() != Kind::array) return list;
    list.d_->storage = RuleStorage::read(sliceOf(*array));
    list.d_->rows.resize(list.d_->storage.size());
    std::iota(list.d_->rows.begin(), list.d_->rows.end(), Index{0});
    return list;
}

std::size_t RuleList::size() const {
    return d_->rows.size();
}

std::string_view RuleList::rule(std::size_t position) const {
    return d_->storage.rule(d_->rows[position]);
}

std::optional<Date> RuleList::date(std::size_t position) const {
    return d_->storage.date(d_->rows[position]);
}

void RuleList::sort(RuleOrder by, const NameOrder& order) {
    d_->sortRows(by, order);
    d_->order = by;
}

bool RuleList::isSorted(RuleOrder by) const {
    return d_->order == by;
}

std::size_t RuleList::add(std::string_view rule, Date date, RuleOrder by, const NameOrder& order) {
    if (d_->order != by) d_->sortRows(by, order);
    Index added = d_->storage.add(rule, date);
    auto place = d_->insertionPoint(added, by, order);
    auto position = static_cast<std::size_t>(place - d_->rows.begin());
    d_->rows.insert(place, added);
    d_->textChanged(added, by);
    return position;
}

void RuleList::replace(std::size_t position, std::string_view rule, Date date) {
    d_->storage.replace(d_->rows[position], rule, date);
    d_->textChanged(d_->rows[position], std::nullopt);
}

void RuleList::remove(std::size_t position) {
    d_->rows.erase(d_->rows.begin() + static_cast<std::ptrdiff_t>(position));
}

std::vector<std::size_t> RuleList::removeEqual(std::size_t position) {
    const std::vector<Index> removed = d_->storage.equalTo(d_->rows[position]);
    std::vector<std::size_t> positions;
    std::size_t kept = 0;
    for (std::size_t row = 0; row < d_->rows.size(); ++row) {
        if (std::ranges::binary_search(removed, d_->rows[row]))
            positions.push_back(row);
        else
            d_->rows[kept++] = d_->rows[row];
    }
    d_->rows.resize(kept);
    return positions;
}

void RuleList::clear() {
    *d_ = Private();
}

void RuleList::prepareSearch() {
    d_->prepareSearch();
}

LargeVector<std::uint32_t> RuleList::search(std::string_view text) const {
    d_->prepareSearch();
    return d_->ruleSearch->search(text, d_->rows);
}

Value RuleList::value() const {
    return Value(std::make_shared<const RuleArray>(d_->storage, d_->rows));
}

}  // namespace store
