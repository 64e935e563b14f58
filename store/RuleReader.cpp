#include <optional>
#include <string>

#include "store/RuleStorage.h"
#include "store/Scalars.h"
#include "store/Schema.h"
#include "store/TextSet.h"
#include "store/XmlScanner.h"

namespace store {

// Goes through an array's text once, taking entries apart as far as a list needs them.
class RuleReader {
public:
    RuleReader(const Slice& array, RuleStorage& storage) : scanner_(array), storage_(storage) {}

    void read() {
        if (scanner_.next() != Event::open) return;
        for (Event event = scanner_.next(); event != Event::close; event = scanner_.next()) {
            const char* begin = scanner_.tagBegin();
            bool isEntry = scanner_.tag() == Tag::dict;
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

    // What one entry says.
    struct Reading {
        std::optional<XmlText> rule;
        std::int64_t date = RuleStorage::noDate;
        bool isPlain = true;
    };

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

    // The entry just read, unless there is one with that rule already. An entry without a rule is like no other.
    void take(std::string_view text) {
        auto number = static_cast<RuleStorage::Number>(storage_.size());
        std::string decoded;
        if (entry_.rule && !entry_.rule->isPlain) decoded = entry_.rule->decoded();
        std::string_view rule = !entry_.rule ? "" : entry_.rule->isPlain ? entry_.rule->raw : decoded;
        auto ruleOf = [this](RuleStorage::Number other) { return storage_.rule(other); };
        if (entry_.rule && !rules_.insert(rule, number, ruleOf)) return;
        storage_.entries_.push_back(storage_.plainEntry(rule, entry_.date));
        if (entry_.isPlain && entry_.rule) return;
        storage_.entries_.back().isPlain = false;
        storage_.originals_.push_back({number, storage_.keep(text)});
    }

    XmlScanner scanner_;
    RuleStorage& storage_;
    TextSet rules_;
    Reading entry_;
};

RuleStorage RuleStorage::read(const Slice& array) {
    RuleStorage storage;
    RuleReader(array, storage).read();
    return storage;
}

}  // namespace store
