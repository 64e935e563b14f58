#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace store {

// Property-list values: string, Boolean, date, data, integer, real, array, dictionary.
//
// A value is either built from a C++ value or a slice: a range of the text that it was read from, validated once and
// parsed lazily. Writing a slice copies its bytes, so values that a change does not touch cost a copy and keep their
// exact text. Values are cheap to copy: they share their content. Any thread, one at a time per value.

using Date = std::chrono::sys_seconds;

enum class Kind { string, boolean, date, data, integer, real, array, dictionary };

class Dictionary;
class ElementIndex;
class Value;
class XmlWriter;

using Array = std::vector<Value>;

// A lazy array: writes its elements from a representation of its own, without a Value for each.
class ArraySource {
public:
    ArraySource() = default;
    virtual ~ArraySource() = default;
    ArraySource(const ArraySource&) = delete;
    ArraySource& operator=(const ArraySource&) = delete;
    virtual bool isEmpty() const = 0;
    virtual void writeElements(XmlWriter& writer) const = 0;
};

// A text that was read, shared by its slices.
struct SlicedText {
    std::shared_ptr<const char[]> bytes;
    std::shared_ptr<const ElementIndex> index;  // nullptr when the text was read without one
};

// An element of a text that was read and validated. Keeps the text alive. Large dictionaries consist of slices, so a
// slice is small: its kind is read from its tag when it is asked for.
struct Slice {
    std::shared_ptr<const SlicedText> text;
    const char* begin = nullptr;  // at the element's opening tag
    const char* end = nullptr;    // behind its closing tag
};

class Value {
public:
    explicit Value(std::string_view text);
    explicit Value(const char* text) : Value(std::string_view(text)) {}
    explicit Value(bool boolean);
    explicit Value(Date date);
    explicit Value(std::int64_t integer);
    explicit Value(double real);
    explicit Value(std::vector<std::byte> data);
    explicit Value(Array array);
    explicit Value(Dictionary dictionary);
    explicit Value(std::shared_ptr<const ArraySource> source);
    explicit Value(Slice slice);

    Kind kind() const;

    // The value when it is of that kind, otherwise nothing. integer() also gives nothing for 2^63 and above. Each call
    // parses a slice, by one level of nesting: keep the result. It is a temporary, so keep it in a variable before
    // looping over `*value.array()`.
    std::optional<std::string> string() const;
    std::optional<bool> boolean() const;
    std::optional<Date> date() const;
    std::optional<std::int64_t> integer() const;
    std::optional<double> real() const;
    std::optional<std::vector<std::byte>> data() const;
    std::optional<Array> array() const;
    std::optional<Dictionary> dictionary() const;

    // True for the Boolean true, a number other than 0, and a string that begins like "true", "yes" or a number other
    // than 0.
    bool boolValue() const;

private:
    friend class XmlWriter;
    friend Slice sliceOf(const Value& value);
    template <class Scalar, class Parse>
    std::optional<Scalar> scalar(Kind wanted, Parse parse) const;

    std::variant<Slice, std::string, bool, Date, std::int64_t, double, std::shared_ptr<const std::vector<std::byte>>,
                 std::shared_ptr<const Array>, std::shared_ptr<const Dictionary>, std::shared_ptr<const ArraySource>>
        content_;
};

// The value as XML: itself where it is a slice, otherwise newly written.
Slice sliceOf(const Value& value);

// Sorted by the UTF-8 bytes of the keys, which is the order in which they are written.
class Dictionary {
public:
    using Entries = std::map<std::string, Value, std::less<>>;

    const Value* find(std::string_view key) const;
    bool contains(std::string_view key) const { return find(key) != nullptr; }
    void set(std::string_view key, Value value);
    void remove(std::string_view key);
    bool empty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }
    Entries::const_iterator begin() const { return entries_.begin(); }
    Entries::const_iterator end() const { return entries_.end(); }

private:
    Entries entries_;
};

}  // namespace store
