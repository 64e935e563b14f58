#include "store/RuleStorage.h"

#include <algorithm>

#include "store/Schema.h"
#include "store/XmlWriter.h"

namespace store {

std::string_view RuleStorage::rule(Number number) const {
    const Entry& entry = entries_[number];
    return {pool_.data() + entry.offset, entry.size};
}

std::optional<Date> RuleStorage::date(Number number) const {
    std::int64_t seconds = entries_[number].date;
    if (seconds == noDate) return std::nullopt;
    return Date(std::chrono::seconds(seconds));
}

bool RuleStorage::areEqual(Number a, Number b) const {
    if (entries_[a].isPlain != entries_[b].isPlain) return false;
    if (!entries_[a].isPlain) return original(a) == original(b);
    return entries_[a].date == entries_[b].date && rule(a) == rule(b);
}

RuleStorage::Number RuleStorage::add(std::string_view rule, Date date) {
    entries_.push_back(plainEntry(rule, date.time_since_epoch().count()));
    return static_cast<Number>(entries_.size() - 1);
}

void RuleStorage::replace(Number number, std::string_view rule, Date date) {
    entries_[number] = plainEntry(rule, date.time_since_epoch().count());
}

RuleStorage::Part RuleStorage::keep(std::string_view text) {
    Part part{static_cast<std::uint32_t>(pool_.size()), static_cast<std::uint32_t>(text.size())};
    pool_.append(text);
    return part;
}

RuleStorage::Entry RuleStorage::plainEntry(std::string_view rule, std::int64_t date) {
    Part text = keep(rule);
    Entry entry;
    entry.offset = text.offset;
    entry.size = text.size & 0x7FFFFFFF;
    entry.date = date;
    return entry;
}

std::string_view RuleStorage::original(Number number) const {
    auto found = std::lower_bound(originals_.begin(), originals_.end(), number,
                                  [](const Original& a, Number b) { return a.number < b; });
    return at(found->text);
}

void RuleStorage::write(XmlWriter& writer, const std::vector<Number>& numbers) const {
    const std::string outer = writer.indentation();
    const std::string inner = outer + '\t';
    auto key = [&](std::string_view name) { return inner + "<key>" + std::string(name) + "</key>\n" + inner; };
    const std::string begin = outer + "<dict>\n";
    const std::string beforeDate = key(keys::date) + "<date>";
    const std::string beforeRule = key(keys::rule) + "<string>";
    const std::string end = "</string>\n" + outer + "</dict>\n";
    for (Number number : numbers) {
        const Entry& entry = entries_[number];
        if (!entry.isPlain) {
            writer.line(original(number));
            continue;
        }
        writer.raw(begin);
        if (entry.date != noDate) {
            writer.raw(beforeDate);
            writer.date(Date(std::chrono::seconds(entry.date)));
            writer.raw("</date>\n");
        }
        writer.raw(beforeRule);
        writer.escaped(rule(number));
        writer.raw(end);
    }
    for (Part element : foreign_) writer.line(at(element));
}

}  // namespace store
