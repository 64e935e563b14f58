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

// Writes property lists as XML: declaration, document type, tabs, sorted keys, one value a line, one newline at the
// end. Slices are copied as they stand. Characters that XML cannot carry become U+FFFD, a carriage return "&#13;".
// Bytes are gathered; `flush` hands over the last ones.
class XmlWriter {
public:
    explicit XmlWriter(Sink& sink, std::size_t depth = 0);

    void document(const Dictionary& dictionary);
    // One value with its indentation and line end.
    void value(const Value& value);
    void flush();

    // Pieces, for those who write elements themselves.
    void raw(std::string_view text);
    void escaped(std::string_view text);
    void date(Date date);
    // Lines, with their indentation and end.
    void line(std::string_view text);
    void key(std::string_view text);
    void string(std::string_view text);
    // So many elements, in the order of their numbers; where that pays off, several writers lay them out at the same
    // time. `workFor` is called in the beginning, on the calling thread, for each of these.
    void inBlocks(std::size_t count, const std::function<XmlBlocks::Work(XmlWriter&)>& workFor);
    // The tabs before an element at the present depth. From some depth on they would be most of the text: there are no
    // more of them.
    std::string indentation() const { return std::string(tabCount(), '\t'); }

    // How far to the right what comes next stands.
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
        // What does not fit is not gathered: a large slice goes out from where it lies.
        if (text.size() > capacity) {
            largeRaw(text);
            return;
        }
    }
    std::memcpy(bytes_.get() + used_, text.data(), text.size());
    used_ += text.size();
}

}  // namespace store
