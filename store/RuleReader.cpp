#include <optional>
#include <string>

#include "store/RuleEntryLayout.h"
#include "store/RuleStorage.h"
#include "store/Scalars.h"
#include "store/Schema.h"
#include "store/XmlScanner.h"

namespace store {

// Goes through an array's text once, taking entries apart as far as a list needs them.
class RuleReader {
public:
    RuleReader(const Slice& array, RuleStorage& storage) : scanner_(array), storage_(storage) {
        std::size_t count = static_cast<std::size_t>(array.end - array.begin) / typicalEntry;
        storage_.entries_.reserve(count);
        storage_.pool_.reserve(count * typicalRule);
    }

    void read() {
        if (scanner_.next() != Event::open) return;
        for (Event event = scanner_.next(); event != Event::close; event = scanner_.next()) {
            const char* begin = scanner_.tagBegin();
            bool isEntry = scanner_.tag() == Tag::dict;
            if (isEntry && takeWhole(begin)) continue;
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

private:
    using Event = XmlScanner::Event;

    // Entries as they are written take about 140 bytes, of which a rule is a sixth. Rather more is reserved: what is not
    // used costs nothing, but to grow is to copy it all.
    static constexpr std::size_t typicalEntry = 128;
    static constexpr std::size_t typicalRule = 40;

    // What one entry says.
    struct Reading {
        std::optional<XmlText> rule;
        std::int64_t date = RuleStorage::noDate;
        bool isPlain = true;
    };

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
