#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "store/PropertyList.h"

namespace store {

class XmlWriter;

// Writes rule entries as the elements of the array that the writer is in.
class RuleEntryWriter {
public:
    explicit RuleEntryWriter(XmlWriter& writer);

    void write(std::string_view rule, std::optional<Date> date);

private:
    XmlWriter& writer_;
    // What stands around date and rule is the same in every entry.
    std::string begin_;
    std::string beforeDate_;
    std::string beforeRule_;
    std::string end_;
};

}  // namespace store
