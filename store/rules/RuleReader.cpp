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

// Goes through an array's text once, taking entries apart as far as a list needs them.
class RuleReader {
public:
    RuleReader(const Slice& array, RuleStorage& storage)
        : scanner_(array), end_(array.end), runs_(RuleEntryRuns::of(array)), storage_(storage) {
        std::size_t count = static_cast<std::size_t>(array.end - array.begin) / typicalEntry;
        storage_.entries_.reserve(count);
        storage_.pool_.reserve(count * typicalRule);
    }

    void read() {
        walk();
        fillRuns();
    }

private:
    using Event = XmlScanner::Event;

    void walk() {
        if (scanner_.next() != Event::open) return;
        for (Event event = scanner_.next(); event != Event::close; event = scanner_.next()) {
            const char* begin = scanner_.tagBegin();
            bool isEntry = scanner_.tag() == Tag::dict;
            if (isEntry && (leaveRoom(begin) || takeWhole(begin))) continue;
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

    // Entries as they are written take about 140 bytes, of which a rule is a sixth. Rather more is reserved: what is
    // not used costs nothing, but to grow is to copy it all.
    static constexpr std::size_t typicalEntry = 96;
    static constexpr std::size_t typicalRule = 32;

    // What one entry says.
    struct Reading {
        std::optional<XmlText> rule;
        std::int64_t date = RuleStorage::noDate;
        bool isPlain = true;
    };

    // Entries that are taken when all has been walked through, several runs at the same time.
    struct Room {
        RuleEntryRuns::Run run;
        std::size_t number;
        std::size_t offset;
    };

    bool leaveRoom(const char* begin) {
        const RuleEntryRuns::Run* run = runs_.at(begin, end_);
        if (!run) return false;
        rooms_.push_back({*run, storage_.entries_.size(), storage_.pool_.size()});
        storage_.entries_.resize(storage_.entries_.size() + run->count);
        storage_.pool_.resize(storage_.pool_.size() + run->textSize);
        scanner_.moveTo(run->end);
        return true;
    }

    void fillRuns() {
        constexpr std::size_t worthwhile = 4;  // runs, for a thread of their own
        std::atomic<std::size_t> next = 0;
        inAll(partsWorthwhile(rooms_.size(), worthwhile), [&](std::size_t) {
            for (std::size_t each = next++; each < rooms_.size(); each = next++) fill(rooms_[each]);
        });
    }

    void fill(const Room& room) {
        RuleStorage::Part text{static_cast<std::uint32_t>(room.offset), 0};
        const char* dict = room.run.begin;
        for (std::size_t number = room.number; number < room.number + room.run.count; ++number) {
            const RuleEntryLayout::Match match = RuleEntryLayout::matchAt(dict);
            text.size = static_cast<std::uint32_t>(match.rule.size());
            storage_.entries_[number] = RuleStorage::plainEntry(text, match.date.time_since_epoch().count());
            match.rule.copy(storage_.pool_.data() + text.offset, text.size);
            text.offset += text.size;
            dict = RuleEntryLayout::nextEntry(dict, match.end);
        }
    }

    bool takeWhole(const char* begin) {
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

    // Of equal keys the last counts, but such an entry is no longer plain.
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

    // The entry just read.
    void take(std::string_view text) {
        std::string rule = entry_.rule ? entry_.rule->decoded() : std::string();
        RuleStorage::Entry entry = storage_.plainEntry(rule, entry_.date);
        entry.hasRule = entry_.rule.has_value();
        entry.isPlain = entry_.isPlain && entry.hasRule;
        if (!entry.isPlain)
            storage_.originals_.push_back({static_cast<RuleStorage::Number>(storage_.size()), storage_.keep(text)});
        storage_.entries_.push_back(entry);
    }

    XmlScanner scanner_;
    const char* end_;
    RuleEntryRuns runs_;
    std::vector<Room> rooms_;
    RuleStorage& storage_;
    Reading entry_;
};

RuleStorage RuleStorage::read(const Slice& array) {
    RuleStorage storage;
    RuleReader(array, storage).read();
    storage.dropRepeated();
    return storage;
}

}  // namespace store
