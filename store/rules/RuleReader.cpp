#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "store/parallel/Parts.h"
#include "store/plist/Scalars.h"
#include "store/plist/XmlScanner.h"
#include "store/rules/RuleEntryKeys.h"
#include "store/rules/RuleEntryLayout.h"
#include "store/rules/RuleEntryRuns.h"
#include "store/rules/RuleStorage.h"

namespace store {

// Fills a RuleStorage from an array's text, in one sequential pass that skips runs of entries and a parallel one that
// reads the runs.
class RuleReader {
public:
    RuleReader(const Slice& array, RuleStorage& storage)
        : scanner_(array), end_(array.end), runs_(RuleEntryRuns::of(array)), storage_(storage) {
        std::size_t count = static_cast<std::size_t>(array.end - array.begin) / typicalEntry;
        storage_.entries_.reserve(count);
        storage_.pool_.reserve(count * typicalRule);
    }

    void read() {
        readSequentially();
        fillRuns();
    }

private:
    using Event = XmlScanner::Event;

    void readSequentially() {
        if (scanner_.next() != Event::open) return;
        for (Event event = scanner_.next(); event != Event::close; event = scanner_.next()) {
            const char* begin = scanner_.tagBegin();
            bool isEntry = scanner_.tag() == Tag::dict;
            if (isEntry && (reserveRun(begin) || takeMatch(begin))) continue;
            if (isEntry)
                readEntry(event);
            else
                scanner_.skipElement(event);
            std::string_view text(begin, static_cast<std::size_t>(scanner_.position() - begin));
            if (isEntry)
                take(text);
            else
                storage_.foreign_.push_back(storage_.keep(text));
        }
    }

    // Written entries take about 140 bytes, a sixth of which is the rule. More is reserved: unused memory is never
    // touched and costs nothing, while growing copies everything.
    static constexpr std::size_t typicalEntry = 96;
    static constexpr std::size_t typicalRule = 32;

    // A parsed entry.
    struct Reading {
        std::optional<XmlText> rule;
        std::int64_t date = RuleStorage::noDate;
        bool isPlain = true;
    };

    // A run and the place reserved for its entries and texts. Filled after the sequential pass, several runs in
    // parallel.
    struct Reserved {
        RuleEntryRuns::Run run;
        std::size_t index;
        std::size_t offset;
    };

    bool reserveRun(const char* begin) {
        const RuleEntryRuns::Run* run = runs_.at(begin, end_);
        if (!run) return false;
        reserved_.push_back({*run, storage_.entries_.size(), storage_.extend(run->textSize)});
        storage_.entries_.resize(storage_.entries_.size() + run->count);
        scanner_.moveTo(run->end);
        return true;
    }

    void fillRuns() {
        constexpr std::size_t worthwhile = 4;  // runs for each thread
        std::atomic<std::size_t> next = 0;
        inAll(partsWorthwhile(reserved_.size(), worthwhile), [&](std::size_t) {
            for (std::size_t each = next++; each < reserved_.size(); each = next++) fill(reserved_[each]);
        });
    }

    void fill(const Reserved& reserved) {
        RuleStorage::Range text{static_cast<std::uint32_t>(reserved.offset), 0};
        const char* dict = reserved.run.begin;
        for (std::size_t index = reserved.index; index < reserved.index + reserved.run.count; ++index) {
            const RuleEntryLayout::Match match = RuleEntryLayout::matchAt(dict);
            text.size = static_cast<std::uint32_t>(match.rule.size());
            storage_.entries_[index] = RuleStorage::plainEntry(text, match.date.time_since_epoch().count());
            match.rule.copy(storage_.pool_.data() + text.offset, text.size);
            text.offset += text.size;
            dict = RuleEntryLayout::nextEntry(dict, match.end);
        }
    }

    bool takeMatch(const char* begin) {
        RuleEntryLayout::Match match = RuleEntryLayout::matchAt(begin);
        if (!match.end) return false;
        scanner_.moveTo(match.end);
        storage_.entries_.push_back(storage_.plainEntry(match.rule, match.date.time_since_epoch().count()));
        return true;
    }

    void readEntry(Event event) {
        entry_ = Reading();
        if (event == Event::empty) return;
        for (Event keyEvent = scanner_.next(); keyEvent != Event::close; keyEvent = scanner_.next()) {
            XmlText key;
            if (keyEvent == Event::open) scanner_.text(key);
            std::string decoded;
            if (!key.isPlain) decoded = key.decoded();
            readValue(key.isPlain ? key.raw : std::string_view(decoded), scanner_.next());
        }
    }

    // Of equal keys the last counts. An entry with equal keys is not plain.
    void readValue(std::string_view key, Event event) {
        XmlText text;
        bool isScalar = event == Event::open && !isContainer(scanner_.tag());
        Tag tag = scanner_.tag();
        if (isScalar)
            scanner_.text(text);
        else
            scanner_.skipElement(event);
        if (key == keys::rule && tag == Tag::string) {
            entry_.isPlain &= !entry_.rule;
            entry_.rule = text;
        } else if (key == keys::date && tag == Tag::date) {
            entry_.isPlain &= entry_.date == RuleStorage::noDate;
            auto date = text.isPlain ? parseDate(text.raw) : parseDate(text.decoded());
            entry_.date = date->time_since_epoch().count();
        } else {
            entry_.isPlain = false;
            if (key == keys::rule) entry_.rule.reset();
            if (key == keys::date) entry_.date = RuleStorage::noDate;
        }
    }

    // Stores the parsed entry.
    void take(std::string_view text) {
        std::string rule = entry_.rule ? entry_.rule->decoded() : std::string();
        RuleStorage::Entry entry = storage_.plainEntry(rule, entry_.date);
        entry.hasRule = entry_.rule.has_value();
        entry.isPlain = entry_.isPlain && entry.hasRule;
        if (!entry.isPlain)
            storage_.originals_.push_back({static_cast<RuleStorage::Index>(storage_.size()), storage_.keep(text)});
        storage_.entries_.push_back(entry);
    }

    XmlScanner scanner_;
    const char* end_;
    RuleEntryRuns runs_;
    std::vector<Reserved> reserved_;
    RuleStorage& storage_;
    Reading entry_;
};

RuleStorage RuleStorage::read(const Slice& array) {
    RuleStorage storage;
    RuleReader(array, storage).read();
    storage.removeDuplicates();
    return storage;
}

RuleStorage RuleStorage::readAll(const Value* array) {
    RuleStorage storage;
    if (array && array->kind() == Kind::array) RuleReader(sliceOf(*array), storage).read();
    return storage;
}

}  // namespace store
