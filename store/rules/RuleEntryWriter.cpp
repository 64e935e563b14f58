#include "store/rules/RuleEntryWriter.h"

#include "store/plist/XmlWriter.h"

namespace store {

RuleEntryWriter::RuleEntryWriter(XmlWriter& writer)
    : writer_(writer), indentation_(writer.indentation()), layout_(indentation_.size()) {
    std::string_view line = layout_.beforeRule();
    beforeRuleWithoutDate_ = "<dict>" + std::string(line.substr(line.find('\n')));
}

void RuleEntryWriter::write(std::string_view rule, std::optional<Date> date) {
    writer_.raw(indentation_);
    if (date) {
        writer_.raw(layout_.beforeDate());
        writer_.date(*date);
        writer_.raw(layout_.beforeRule());
    } else {
        writer_.raw(beforeRuleWithoutDate_);
    }
    writer_.escaped(rule);
    writer_.raw(layout_.end());
    writer_.raw("\n");
}

}  // namespace store
