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
// A value is either built (it holds what it was given) or a slice of the text that it was read from, checked once and
// taken apart only when somebody asks. Writing a slice copies its text as it stands, so what an action does not touch
// costs no more than copying it and comes out as it was. Values are cheap to copy: they share what they hold.
// Nothing here knows files. Any thread, one at a time per value.

using Date = std::chrono::sys_seconds;

enum class Kind { string, boolean, date, data, integer, real, array, dictionary };

class Dictionary;
class ElementIndex;
class Value;
class XmlWriter;

using Array = std::vector<Value>;

// An array that is written element by element by somebody who holds the elements in a form of their own.
class ArraySource {
public:
    ArraySource() = default;
    virtual ~ArraySource() = default;
    ArraySource(const ArraySource&) = delete;
    ArraySource& operator=(const ArraySource&) = delete;
    virtual bool isEmpty() const = 0;
    virtual void writeElements(XmlWriter& writer) const = 0;
};

// What slices are parts of.
struct SlicedText {
    std::shared_ptr<const char[]> bytes;
    std::shared_ptr<const ElementIndex> index;  // nullptr when the text was read without one
};

// Part of a text that was read and checked: an element. Keeps the text alive. Large dictionaries hold little else, so
// it is small: what kind of element it is stands in the text.
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

    // The value when it is of that kind, otherwise nothing; integer() also for what 63 bits cannot hold. A slice is
    // taken apart by one level at each call: keep what it gives (in a variable of its own, a loop over `*value.array()`
    // would lose it).
    std::optional<std::string> string() const;
    std::optional<bool> boolean() const;
    std::optional<Date> date() const;
    std::optional<std::int64_t> integer() const;
    std::optional<double> real() const;
    std::optional<std::vector<std::byte>> data() const;
    std::optional<Array> array() const;
    std::optional<Dictionary> dictionary() const;

    // The truth of a Boolean or of a number other than 0; of a string, whether it begins like "true", "yes" or a
    // number other than 0. False for everything else.
    bool boolValue() const;

private:
    friend class XmlWriter;
    friend Slice sliceOf(const Value& value);
    std::variant<Slice, std::string, bool, Date, std::int64_t, double, std::shared_ptr<const std::vector<std::byte>>,
                 std::shared_ptr<const Array>, std::shared_ptr<const Dictionary>, std::shared_ptr<const ArraySource>>
        content_;
};

// The value as text: the slice that it is, or one that is written for the purpose.
Slice sliceOf(const Value& value);

// Keys in the order in which they are written: by their UTF-8 bytes.
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
