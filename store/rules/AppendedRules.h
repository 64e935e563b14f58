#pragma once

#include <optional>
#include <string>

#include "store/plist/PropertyList.h"

namespace store {

// A rule list followed by an entry for each line of a text, dated with the time of writing. Lines are separated by
// "\n"; an empty line gives an empty rule. The old list is copied verbatim: appending costs no more than copying it.
class AppendedRules : public ArraySource {
public:
    // `list` may be nullptr or no array: then the list is empty. `lines` is UTF-8.
    AppendedRules(const Value* list, std::string lines);

    // Even an empty text is one line.
    bool isEmpty() const override { return false; }
    void writeElements(XmlWriter& writer) const override;

private:
    std::optional<Slice> list_;
    std::string lines_;
};

}  // namespace store
