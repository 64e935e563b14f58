#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "store/plist/Scalars.h"
#include "store/plist/XmlScanner.h"
#include "store/rules/RuleEntryKeys.h"
#include "store/rules/RuleEntryLayout.h"
#include "store/rules/RuleEntryRuns.h"

namespace store {

// An entry that is not of the written layout.
struct OddRuleEntry {
    std::optional<XmlText> rule;
    std::optional<Date> date;
    bool isPlain = true;  // no key repeats, and there are no other keys
    std::string_view text;
};

// Takes an array's text apart, in one sequential pass that skips runs of entries. It calls a handler in stored order:
//
//     handler.run(const RuleEntryRuns::Run&)
//     handler.entry(const RuleEntryLayout::Match&)
//     handler.oddEntry(const OddRuleEntry&)
//     handler.foreign(std::string_view)  // the text of an element that is no dictionary
template <class Handler>
class RuleScanner {
public:
    RuleScanner(const Slice& array, Handler& handler)
        : scanner_(array), end_(array.end), runs_(RuleEntryRuns::of(array)), handler_(handler) {}

    void scan() {
        if (scanner_.next() != Event::open) return;
        for (Event event = scanner_.next(); event != Event::close; event = scanner_.next()) {
            const char* begin = scanner_.tagBegin();
            const bool isEntry = scanner_.tag() == Tag::dict;
            if (isEntry && (takeRun(begin) || takeEntry(begin))) continue;
            OddRuleEntry entry;
            if (isEntry)
                entry = readEntry(event);
            else
                scanner_.skipElement(event);
            entry.text = {begin, static_cast<std::size_t>(scanner_.position() - begin)};
            if (isEntry)
                handler_.oddEntry(entry);
            else
                handler_.foreign(entry.text);
        }
    }

private:
    using Event = XmlScanner::Event;

    bool takeRun(const char* begin) {
        const RuleEntryRuns::Run* run = runs_.at(begin, end_);
        if (!run) return false;
        handler_.run(*run);
        scanner_.moveTo(run->end);
        return true;
    }

    bool takeEntry(const char* begin) {
        const RuleEntryLayout::Match match = RuleEntryLayout::matchAt(begin);
        if (!match.end) return false;
        handler_.entry(match);
        scanner_.moveTo(match.end);
        return true;
    }

    OddRuleEntry readEntry(Event event) {
        OddRuleEntry entry;
        if (event == Event::empty) return entry;
        for (Event keyEvent = scanner_.next(); keyEvent != Event::close; keyEvent = scanner_.next()) {
            XmlText key;
            if (keyEvent == Event::open) scanner_.text(key);
            std::string decoded;
            if (!key.isPlain) decoded = key.decoded();
            readValue(entry, key.isPlain ? key.raw : std::string_view(decoded), scanner_.next());
        }
        return entry;
    }

    // Of equal keys the last counts.
    void readValue(OddRuleEntry& entry, std::string_view key, Event event) {
        XmlText text;
        const bool isScalar = event == Event::open && !isContainer(scanner_.tag());
        const Tag tag = scanner_.tag();
        if (isScalar)
            scanner_.text(text);
        else
            scanner_.skipElement(event);
        if (key == keys::rule && tag == Tag::string) {
            entry.isPlain &= !entry.rule;
            entry.rule = text;
        } else if (key == keys::date && tag == Tag::date) {
            entry.isPlain &= !entry.date;
            entry.date = text.isPlain ? parseDate(text.raw) : parseDate(text.decoded());
        } else {
            entry.isPlain = false;
            if (key == keys::rule) entry.rule.reset();
            if (key == keys::date) entry.date.reset();
        }
    }

    XmlScanner scanner_;
    const char* end_;
    RuleEntryRuns runs_;
    Handler& handler_;
};

template <class Handler>
void scanRules(const Slice& array, Handler& handler) {
    RuleScanner(array, handler).scan();
}

}  // namespace store
