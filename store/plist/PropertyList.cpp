#include "store/plist/PropertyList.h"

#include <algorithm>
#include <utility>

#include "store/files/BufferSink.h"
#include "store/plist/Scalars.h"
#include "store/plist/XmlScanner.h"
#include "store/plist/XmlWriter.h"

namespace store {

namespace {

using Event = XmlScanner::Event;

// The text of a scalar's slice, decoded.
std::string textOf(const Slice& slice) {
    XmlScanner scanner(slice);
    XmlText text;
    if (scanner.next() == Event::open) scanner.text(text);
    return text.decoded();
}

Kind kindOf(const Slice& slice) {
    Tag tag{};
    readTagName(slice.begin + 1, tag);
    return kindOf(tag);
}

bool truthOf(const Slice& slice) {
    XmlScanner scanner(slice);
    scanner.next();
    return scanner.tag() == Tag::yes;
}

Value elementAt(const Slice& container, XmlScanner& scanner, Event event) {
    Slice element{container.text, scanner.tagBegin(), nullptr};
    scanner.skipElement(event);
    element.end = scanner.position();
    return Value(std::move(element));
}

Array elementsOf(const Slice& slice) {
    Array elements;
    XmlScanner scanner(slice);
    if (scanner.next() == Event::empty) return elements;
    for (Event event = scanner.next(); event != Event::close; event = scanner.next())
        elements.push_back(elementAt(slice, scanner, event));
    return elements;
}

Dictionary entriesOf(const Slice& slice) {
    Dictionary entries;
    XmlScanner scanner(slice);
    if (scanner.next() == Event::empty) return entries;
    for (Event event = scanner.next(); event != Event::close; event = scanner.next()) {
        XmlText key;
        if (event == Event::open) scanner.text(key);
        Event value = scanner.next();
        entries.set(key.decoded(), elementAt(slice, scanner, value));
    }
    return entries;
}

// See Value::boolValue().
bool beginsLikeTruth(std::string_view text) {
    auto skip = [&](std::string_view letters) {
        text.remove_prefix(std::min(text.find_first_not_of(letters), text.size()));
    };
    skip(" \t\n\r");
    if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
    skip("0");
    return !text.empty() && std::string_view("TtYy123456789").find(text.front()) != std::string_view::npos;
}

using Container = std::variant<std::unique_ptr<const Array>, std::unique_ptr<const Dictionary>>;

// Destroys nested containers iteratively: recursion could overflow the stack.
void destroyContainer(Container ended) {
    thread_local std::vector<Container>* waiting = nullptr;
    if (waiting) {
        waiting->push_back(std::move(ended));
        return;
    }
    std::vector<Container> all;
    waiting = &all;
    all.push_back(std::move(ended));
    while (!all.empty()) {
        const Container next = std::move(all.back());
        all.pop_back();
    }
    waiting = nullptr;
}

template <class Built>
std::shared_ptr<const Built> shared(Built container) {
    return {new Built(std::move(container)),
            [](const Built* built) { destroyContainer(std::unique_ptr<const Built>(built)); }};
}

}  // namespace

Value::Value(std::string_view text) : content_(std::string(text)) {}
Value::Value(bool boolean) : content_(boolean) {}
Value::Value(Date date) : content_(date) {}
Value::Value(std::int64_t integer) : content_(integer) {}
Value::Value(double real) : content_(real) {}
Value::Value(std::vector<std::byte> data) : content_(std::make_shared<const std::vector<std::byte>>(std::move(data))) {}
Value::Value(Array array) : content_(shared(std::move(array))) {}
Value::Value(Dictionary dictionary) : content_(shared(std::move(dictionary))) {}
Value::Value(std::shared_ptr<const ArraySource> source) : content_(std::move(source)) {}
Value::Value(Slice slice) : content_(std::move(slice)) {}

Kind Value::kind() const {
    static constexpr Kind kinds[] = {Kind::string, Kind::string, Kind::boolean, Kind::date,       Kind::integer,
                                     Kind::real,   Kind::data,   Kind::array,   Kind::dictionary, Kind::array};
    auto* slice = std::get_if<Slice>(&content_);
    return slice ? kindOf(*slice) : kinds[content_.index()];
}

template <class Scalar, class Parse>
std::optional<Scalar> Value::scalar(Kind wanted, Parse parse) const {
    if (kind() != wanted) return std::nullopt;
    if (auto* built = std::get_if<Scalar>(&content_)) return *built;
    return parse(std::get<Slice>(content_));
}

std::optional<std::string> Value::string() const {
    return scalar<std::string>(Kind::string, textOf);
}

std::optional<bool> Value::boolean() const {
    return scalar<bool>(Kind::boolean, truthOf);
}

std::optional<Date> Value::date() const {
    return scalar<Date>(Kind::date, [](const Slice& slice) { return parseDate(textOf(slice)); });
}

std::optional<std::int64_t> Value::integer() const {
    return scalar<std::int64_t>(Kind::integer, [](const Slice& slice) { return parseInteger(textOf(slice))->value(); });
}

std::optional<double> Value::real() const {
    return scalar<double>(Kind::real, [](const Slice& slice) { return parseReal(textOf(slice)); });
}

std::optional<std::vector<std::byte>> Value::data() const {
    if (kind() != Kind::data) return std::nullopt;
    if (auto* data = std::get_if<std::shared_ptr<const std::vector<std::byte>>>(&content_)) return **data;
    return parseData(textOf(std::get<Slice>(content_)));
}

std::optional<Array> Value::array() const {
    if (kind() != Kind::array) return std::nullopt;
    if (auto* array = std::get_if<std::shared_ptr<const Array>>(&content_)) return **array;
    return elementsOf(sliceOf(*this));
}

std::optional<Dictionary> Value::dictionary() const {
    if (kind() != Kind::dictionary) return std::nullopt;
    if (auto* dictionary = std::get_if<std::shared_ptr<const Dictionary>>(&content_)) return **dictionary;
    return entriesOf(std::get<Slice>(content_));
}

bool Value::boolValue() const {
    if (kind() == Kind::integer) return integer() != 0;
    if (kind() == Kind::real) return real() != 0.0;
    if (kind() == Kind::string) return beginsLikeTruth(*string());
    return boolean().value_or(false);
}

Slice sliceOf(const Value& value) {
    if (auto* slice = std::get_if<Slice>(&value.content_)) return *slice;
    BufferSink sink;
    XmlWriter writer(sink);
    writer.value(value);
    writer.flush();
    const Buffer text = sink.take();
    return {std::make_shared<const SlicedText>(SlicedText{text.bytes, nullptr}), text.bytes.get(),
            text.bytes.get() + text.size};
}

const Value* Dictionary::find(std::string_view key) const {
    auto found = entries_.find(key);
    return found == entries_.end() ? nullptr : &found->second;
}

void Dictionary::set(std::string_view key, Value value) {
    entries_.insert_or_assign(std::string(key), std::move(value));
}

void Dictionary::remove(std::string_view key) {
    auto found = entries_.find(key);
    if (found != entries_.end()) entries_.erase(found);
}

}  // namespace store
