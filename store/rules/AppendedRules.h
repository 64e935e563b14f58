#pragma once

#include <optional>
#include <string>

#include "store/plist/PropertyList.h"

namespace store {

// A rule list with an entry for every line of a text behind it, dated when it is written. Lines end at "\n"; the text
// behind the last one, empty or not, is a line as well. What the list held is copied as it stands, so that appending to
// a long list costs no more than writing it.
class AppendedRules : public ArraySource {
public:
    // `list` is nullptr, or anything but an array, where there is no list yet. `lines` is UTF-8.
    AppendedRules(const Value* list, std::string lines);

    // Never: the text has at least one line.
    bool isEmpty() const override { return false; }
    void writeElements(XmlWriter& writer) const override;

private:
    std::optional<Slice> list_;
    std::string lines_;
};

}  // namespace store
