#include "store/RuleEntryWriter.h"

#include "store/Schema.h"
#include "store/XmlWriter.h"

namespace store {

RuleEntryWriter::RuleEntryWriter(XmlWriter& writer) : writer_(writer) {
    const std::string outer = writer.indentation();
    const std::string inner = outer + '\t';
    auto key = [&](std::string_view name) { return inner + "<key>" + std::string(name) + "</key>\n" + inner; };
    begin_ = outer + "<dict>\n";
    beforeDate_ = key(keys::date) + "<date>";
    beforeRule_ = key(keys::rule) + "<string>";
    end_ = "</string>\n" + outer + "</dict>\n";
}

void RuleEntryWriter::write(std::string_view rule, std::optional<Date> date) {
    writer_.raw(begin_);
    if (date) {
        writer_.raw(beforeDate_);
        writer_.date(*date);
        writer_.raw("</date>\n");
    }
    writer_.raw(beforeRule_);
    writer_.escaped(rule);
    writer_.raw(end_);
}

}  // namespace store
