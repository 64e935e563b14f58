#pragma once

#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/plist/PropertyList.h"
#include "store/plist/XmlBlocks.h"

namespace store {

class Sink;

// Writes property lists as XML: declaration, document type, indentation by tabs, sorted keys, one value on a line, one
// newline at the end. Slices are copied verbatim. Characters that XML does not allow become U+FFFD, a carriage return
// "&#13;". Output is buffered: call flush() after the last piece.
class XmlWriter {
public:
    explicit XmlWriter(Sink& sink, std::size_t depth = 0);

    void document(const Dictionary& dictionary);
    // A value with indentation and line end.
    void value(const Value& value);
    void flush();

    // Parts of elements, for an ArraySource.
    void raw(std::string_view text);
    void escaped(std::string_view text);
    void date(Date date);
    // Whole lines with indentation and line end.
    void line(std::string_view text);
    void key(std::string_view text);
    void string(std::string_view text);
    // Writes `count` elements in the order of their indices. Many elements are formatted by several threads, each with
    // a writer of its own. `workFor` returns the function that writes a range of elements to the given writer; it is
    // called on the calling thread, once for each writer, before any of them writes.
    void inBlocks(std::size_t count, const std::function<XmlBlocks::Work(XmlWriter&)>& workFor);
    // The tabs before an element at the current depth; at most 64, since deeper indentation would be most of the text.
    std::string indentation() const { return std::string(tabCount(), '\t'); }

    // Changes the depth of what is written next.
    void indent() { ++depth_; }
    void outdent() { --depth_; }

private:
    struct Container;
    static constexpr std::size_t capacity = 64 * 1024;
    static constexpr std::size_t mostTabs = 64;

    void begin(const Value& value, std::vector<Container>& open);
    void begin(const Container& container, std::vector<Container>& open);
    void complete(std::vector<Container>& open);
    void scalar(const Value& value);
    template <class Content>
    void element(std::string_view tag, Content content);
    void data(const std::vector<std::byte>& data);
    void character(std::string_view& rest);
    void largeRaw(std::string_view text);
    std::size_t tabCount() const { return depth_ < mostTabs ? depth_ : mostTabs; }
    void tabs();

    Sink& sink_;
    std::unique_ptr<char[]> bytes_;
    std::size_t used_ = 0;
    std::size_t depth_;
};

inline void XmlWriter::raw(std::string_view text) {
    if (text.size() > capacity - used_) {
        flush();
        // A slice larger than the buffer bypasses it.
        if (text.size() > capacity) {
            largeRaw(text);
            return;
        }
    }
    std::memcpy(bytes_.get() + used_, text.data(), text.size());
    used_ += text.size();
}

}  // namespace store
