#pragma once

namespace store {

// A hook of the XML reader that skips whole elements. Large files consist of dictionaries of one layout. Code that
// knows the layout recognises them faster than the reader parses them tag by tag, many at once and in parallel.
//
// One object serves one text. It stays with the text (SlicedText::index), so that what it found while the text was read
// is at hand when a slice of it is taken apart.
class ElementIndex {
public:
    ElementIndex() = default;
    virtual ~ElementIndex() = default;

    // `dict` points at the "<dict>" of an array's element in a Buffer whose text ends at `end`. Returns the end of this
    // element or of one of its next siblings, where everything up to there is well-formed; otherwise nullptr, and the
    // reader parses the element. Called in ascending order, for elements that were not skipped. Must not throw anything
    // but std::bad_alloc.
    virtual const char* skip(const char* dict, const char* end) = 0;

protected:
    ElementIndex(const ElementIndex&) = default;
    ElementIndex& operator=(const ElementIndex&) = default;
};

}  // namespace store
