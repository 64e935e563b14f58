#include "store/plist/XmlWriter.h"

#include <algorithm>
#include <vector>

#include "store/files/Sink.h"
#include "store/parallel/Parts.h"
#include "store/plist/Scalars.h"
#include "store/plist/XmlText.h"
#include "store/text/Utf.h"

namespace store {

namespace {

constexpr std::string_view header =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view footer = "</plist>\n";

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

}  // namespace

// An entry of the stack of open containers. Built values may be nested deeper than the call stack allows.
struct XmlWriter::Container {
    const Array* array = nullptr;
    const Dictionary* dictionary = nullptr;
    std::size_t index = 0;
    Dictionary::Entries::const_iterator entry = {};

    explicit Container(const Array& elements) : array(&elements) {}
    explicit Container(const Dictionary& entries) : dictionary(&entries), entry(entries.begin()) {}

    bool isComplete() const { return array ? index == array->size() : entry == dictionary->end(); }
    std::string_view tag() const { return array ? "array" : "dict"; }
};

XmlWriter::XmlWriter(Sink& sink, std::size_t depth)
    : sink_(sink), bytes_(std::make_unique_for_overwrite<char[]>(capacity)), depth_(depth) {}

void XmlWriter::document(const Dictionary& dictionary) {
    raw(header);
    std::vector<Container> open;
    begin(Container(dictionary), open);
    complete(open);
    raw(footer);
    flush();
}

void XmlWriter::flush() {
    if (used_ > 0) sink_.write({bytes_.get(), used_});
    used_ = 0;
}

void XmlWriter::largeRaw(std::string_view text) {
    sink_.write(text);
}

void XmlWriter::tabs() {
    for (std::size_t i = 0; i < tabCount(); ++i) raw("\t");
}

void XmlWriter::line(std::string_view text) {
    tabs();
    raw(text);
    raw("\n");
}

template <class Content>
void XmlWriter::element(std::string_view tag, Content content) {
    tabs();
    raw("<");
    raw(tag);
    raw(">");
    content();
    raw("</");
    raw(tag);
    raw(">\n");
}

void XmlWriter::key(std::string_view text) {
    element("key", [&] { escaped(text); });
}

void XmlWriter::string(std::string_view text) {
    element("string", [&] { escaped(text); });
}

void XmlWriter::value(const Value& value) {
    std::vector<Container> open;
    begin(value, open);
    complete(open);
}

void XmlWriter::begin(const Value& value, std::vector<Container>& open) {
    if (auto* array = std::get_if<std::shared_ptr<const Array>>(&value.content_))
        begin(Container(**array), open);
    else if (auto* dictionary = std::get_if<std::shared_ptr<const Dictionary>>(&value.content_))
        begin(Container(**dictionary), open);
    else
        scalar(value);
}

void XmlWriter::begin(const Container& container, std::vector<Container>& open) {
    if (container.isComplete()) {
        line("<" + std::string(container.tag()) + "/>");
        return;
    }
    line("<" + std::string(container.tag()) + ">");
    indent();
    open.push_back(container);
}

// Writes the rest of all open containers.
void XmlWriter::complete(std::vector<Container>& open) {
    while (!open.empty()) {
        Container& container = open.back();
        if (container.isComplete()) {
            outdent();
            line("</" + std::string(container.tag()) + ">");
            open.pop_back();
        } else if (container.array) {
            begin((*container.array)[container.index++], open);
        } else {
            const auto& [name, next] = *container.entry++;
            key(name);
            begin(next, open);
        }
    }
}

// Writes any value but a built array or dictionary.
void XmlWriter::scalar(const Value& value) {
    std::visit(Overloaded{
                   [&](const Slice& slice) {
                       tabs();
                       raw({slice.begin, static_cast<std::size_t>(slice.end - slice.begin)});
                       raw("\n");
                   },
                   [&](const std::string& text) { string(text); },
                   [&](bool boolean) { line(boolean ? "<true/>" : "<false/>"); },
                   [&](Date when) { element("date", [&] { date(when); }); },
                   [&](std::int64_t integer) { element("integer", [&] { raw(std::to_string(integer)); }); },
                   [&](double real) { element("real", [&] { raw(formatReal(real)); }); },
                   [&](const std::shared_ptr<const std::vector<std::byte>>& bytes) { data(*bytes); },
                   [&](const std::shared_ptr<const ArraySource>& source) {
                       if (source->isEmpty()) {
                           line("<array/>");
                           return;
                       }
                       line("<array>");
                       indent();
                       source->writeElements(*this);
                       outdent();
                       line("</array>");
                   },
                   [](const auto&) {},
               },
               value.content_);
}

void XmlWriter::inBlocks(std::size_t count, const std::function<XmlBlocks::Work(XmlWriter&)>& workFor) {
    constexpr std::size_t worthwhile = 50'000;  // elements for each thread
    constexpr std::size_t ahead = 8;            // blocks for each thread: how far it may get ahead of the slowest
    flush();
    const std::size_t parts = partsWorthwhile(count, worthwhile);
    XmlBlocks blocks(sink_, depth_, count, parts == 1 ? 1 : parts * ahead, workFor);
    inAll(parts, [&](std::size_t) { blocks.write(); });
}

void XmlWriter::date(Date date) {
    char text[dateLength];
    formatDate(date, text);
    raw({text, dateLength});
}

// Base64 in lines of 76 columns, a tab counted as 8, but of at least 16 letters.
void XmlWriter::data(const std::vector<std::byte>& data) {
    line("<data>");
    std::string letters = formatData(data);
    std::size_t width = std::max<std::size_t>(16, 76 - std::min<std::size_t>(76, 8 * depth_)) / 4 * 4;
    for (std::size_t at = 0; at < letters.size(); at += width) line(std::string_view(letters).substr(at, width));
    line("</data>");
}

void XmlWriter::escaped(std::string_view text) {
    while (!text.empty()) {
        const std::size_t plain = plainTextSize(text);
        raw(text.substr(0, plain));
        text.remove_prefix(plain);
        if (!text.empty()) character(text);
    }
}

// Removes the first character of `rest` and writes it, escaped where necessary.
void XmlWriter::character(std::string_view& rest) {
    Utf8Character next = decodeUtf8(rest.data(), rest.data() + rest.size());
    std::string_view bytes = rest.substr(0, std::max(next.length, 1u));
    rest.remove_prefix(bytes.size());
    switch (next.character) {
        case '<':
            return raw("&lt;");
        case '>':
            return raw("&gt;");
        case '&':
            return raw("&amp;");
        case '\r':
            return raw("&#13;");
        default:
            return raw(next.length > 0 && isXmlCharacter(next.character) ? bytes : "\uFFFD");
    }
}

}  // namespace store
