#pragma once

#include <variant>

#include "store/files/BufferSink.h"
#include "store/plist/PropertyListReader.h"
#include "store/plist/XmlWriter.h"
#include "store/rules/RuleEntryRuns.h"

namespace store {

inline ReadResult readText(std::string_view text) {
    return readPropertyList(Buffer::copyOf(text), std::make_shared<RuleEntryRuns>());
}

// For texts that are known to be fine.
inline Dictionary dictionaryOf(std::string_view text) {
    ReadResult result = readText(text);
    auto* dictionary = std::get_if<Dictionary>(&result);
    if (!dictionary) throw std::get<ReadError>(result);
    return *dictionary;
}

// The text of a dictionary with one entry, "a".
inline std::string holdingXml(std::string_view element) {
    return "<dict><key>a</key>" + std::string(element) + "</dict>";
}

inline Dictionary dictionaryHolding(const Value& value) {
    Dictionary dictionary;
    dictionary.set("a", value);
    return dictionary;
}

inline std::string utf16(std::u16string_view text, bool isBig = false) {
    std::string bytes;
    for (char16_t unit : text) {
        char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
        bytes += isBig ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}

inline std::string written(const Dictionary& dictionary) {
    BufferSink sink;
    XmlWriter(sink).document(dictionary);
    return std::string(sink.take().view());
}

// The same value with nothing left as a slice, so that writing it writes every part of it anew. What lies deeper than
// some levels stays, since taking a value apart takes a pass over all of it for each level.
inline Value rebuilt(const Value& value, int levels = 100) {
    if (auto text = value.string()) return Value(*text);
    if (auto boolean = value.boolean()) return Value(*boolean);
    if (auto date = value.date()) return Value(*date);
    if (auto data = value.data()) return Value(*data);
    if (auto integer = value.integer()) return Value(*integer);
    if (auto real = value.real()) return Value(*real);
    if (levels == 0 || value.kind() == Kind::integer) return value;
    if (auto array = value.array()) {
        for (Value& element : *array) element = rebuilt(element, levels - 1);
        return Value(*std::move(array));
    }
    Dictionary entries;
    const Dictionary slices = value.dictionary().value();
    for (const auto& [key, entry] : slices) entries.set(key, rebuilt(entry, levels - 1));
    return Value(std::move(entries));
}

// Two lists that say the same give the same text.
inline std::string canonical(const Dictionary& dictionary) {
    return written(*rebuilt(Value(dictionary)).dictionary());
}

// What was found, as it is written, or why nothing was.
inline std::string outcome(const ReadResult& result) {
    if (auto* found = std::get_if<Dictionary>(&result)) return written(*found);
    const ReadError& error = std::get<ReadError>(result);
    return "failure " + std::to_string(int(error.reason)) + " at byte " + std::to_string(error.byte);
}

}  // namespace store
