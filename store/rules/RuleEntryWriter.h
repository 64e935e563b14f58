#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "store/plist/PropertyList.h"
#include "store/rules/RuleEntryLayout.h"

namespace store {

class XmlWriter;

// Writes rule entries as elements of the array that the writer has begun.
class RuleEntryWriter {
public:
    explicit RuleEntryWriter(XmlWriter& writer);

    void write(std::string_view rule, std::optional<Date> date);

private:
    XmlWriter& writer_;
    std::string indentation_;
    RuleEntryLayout layout_;
    std::string beforeRuleWithoutDate_;
};

}  // namespace store
