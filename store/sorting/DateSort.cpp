#include "store/sorting/DateSort.h"

#include <algorithm>

#include "store/parallel/Parts.h"
#include "store/sorting/KeySort.h"

namespace store {

namespace {

constexpr std::size_t worthwhile = 50'000;  // indices for each thread
constexpr std::int64_t noDate = INT64_MIN;

// The sort key: the distance from the latest date. Without a date, one more than that of the earliest.
std::uint64_t age(std::int64_t date, std::int64_t earliest, std::int64_t latest) {
    const auto before = [latest](std::int64_t of) {
        return static_cast<std::uint64_t>(latest) - static_cast<std::uint64_t>(of);
    };
    return date == noDate ? before(earliest) + 1 : before(date);
}

}  // namespace

void sortByDate(std::vector<std::uint32_t>& indices, const std::function<std::int64_t(std::uint32_t)>& dateOf) {
    LargeVector<Keyed> keyed = keyedByIndex(indices);
    LargeVector<std::int64_t> dates(keyed.size());
    inParts(keyed.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        for (std::size_t each = begin; each < end; ++each) dates[each] = dateOf(indices[keyed[each].place]);
    });
    std::int64_t earliest = INT64_MAX;
    std::int64_t latest = INT64_MIN;
    for (const std::int64_t date : dates) {
        if (date != noDate) earliest = std::min(earliest, date);
        latest = std::max(latest, date);
    }
    for (std::size_t each = 0; each < keyed.size(); ++each) keyed[each].part = age(dates[each], earliest, latest);
    sortByParts(keyed);
    std::vector<std::uint32_t> sorted(indices.size());
    std::ranges::transform(keyed, sorted.begin(), [&](const Keyed& each) { return indices[each.place]; });
    indices = std::move(sorted);
}

}  // namespace store
