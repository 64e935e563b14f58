#include <string>
#include <vector>

#include "store/plist/Scalars.h"
#include "store/rules/RuleScanner.h"
#include "store/rules/RuleStorage.h"

namespace store {

// Fills a RuleStorage from an array's text; several threads read the runs.
class RuleReader {
public:
    RuleReader(const Slice& array, RuleStorage& storage) : storage_(storage) {
        std::size_t count = static_cast<std::size_t>(array.end - array.begin) / typicalEntry;
        storage_.entries_.reserve(count);
        storage_.pool_.reserve(count * typicalRule);
    }

    void read(const Slice& array) {
        scanRules(array, *this);
        forEachRun(reserved_, [this](const Reserved& reserved) { fill(reserved); });
    }

    void run(const RuleEntryRuns::Run& run) {
        reserved_.push_back({run, storage_.entries_.size(), storage_.extend(run.textSize)});
        storage_.entries_.resize(storage_.entries_.size() + run.count);
    }

    void entry(const RuleEntryLayout::Match& match) {
        storage_.entries_.push_back(storage_.plainEntry(match.rule, orderOf(match.date)));
    }

    // An entry with equal keys is not plain.
    void oddEntry(const OddRuleEntry& odd) {
        const std::string rule = odd.rule ? odd.rule->decoded() : std::string();
        RuleStorage::Entry entry = storage_.plainEntry(rule, odd.date ? orderOf(*odd.date) : RuleStorage::noDate);
        entry.hasRule = odd.rule.has_value();
        entry.isPlain = odd.isPlain && entry.hasRule;
        if (!entry.isPlain)
            storage_.originals_.push_back({static_cast<RuleStorage::Index>(storage_.size()), storage_.keep(odd.text)});
        storage_.entries_.push_back(entry);
    }

    void foreign(std::string_view text) { storage_.foreign_.push_back(storage_.keep(text)); }

private:
    // Written entries take about 140 bytes, a sixth of which is the rule. More is reserved: unused memory is never
    // touched and costs nothing, while growing copies everything.
    static constexpr std::size_t typicalEntry = 96;
    static constexpr std::size_t typicalRule = 32;

    // A run and the place reserved for its entries and texts.
    struct Reserved {
        RuleEntryRuns::Run run;
        std::size_t index;
        std::size_t offset;
    };

    static std::int64_t orderOf(Date date) { return date.time_since_epoch().count(); }

    void fill(const Reserved& reserved) {
        RuleStorage::Range text{static_cast<std::uint32_t>(reserved.offset), 0};
        std::size_t index = reserved.index;
        forEachEntry(reserved.run, [&](std::string_view date, std::string_view rule) {
            text.size = static_cast<std::uint32_t>(rule.size());
            storage_.entries_[index++] = RuleStorage::plainEntry(text, orderOf(*parseDate(date)));
            rule.copy(storage_.pool_.data() + text.offset, text.size);
            text.offset += text.size;
        });
    }

    std::vector<Reserved> reserved_;
    RuleStorage& storage_;
};

RuleStorage RuleStorage::read(const Slice& array) {
    RuleStorage storage;
    RuleReader(array, storage).read(array);
    storage.removeDuplicates();
    return storage;
}

}  // namespace store
