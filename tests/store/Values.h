#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
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

inline std::string written(const Dictionary& dictionary) {
    BufferSink sink;
    XmlWriter(sink).document(dictionary);
    return std::string(sink.take().view());
}

// The same value with nothing left as a slice, so that writing it writes every part of it anew.
inline Value rebuilt(const Value& value) {
    switch (value.kind()) {
        case Kind::string:
            return Value(*value.string());
        case Kind::boolean:
            return Value(*value.boolean());
        case Kind::date:
            return Value(*value.date());
        case Kind::data:
            return Value(*value.data());
        case Kind::integer:
            return value.integer() ? Value(*value.integer()) : value;
        case Kind::real:
            return Value(*value.real());
        case Kind::array: {
            Array elements;
            Array slices = *value.array();
            for (const Value& element : slices) elements.push_back(rebuilt(element));
            return Value(std::move(elements));
        }
        case Kind::dictionary:
            break;
    }
    Dictionary entries;
    Dictionary slices = *value.dictionary();
    for (const auto& [key, entry] : slices) entries.set(key, rebuilt(entry));
    return Value(std::move(entries));
}

// Two lists that say the same give the same text.
inline std::string canonical(const Dictionary& dictionary) {
    return written(*rebuilt(Value(dictionary)).dictionary());
}

inline void PrintTo(const ReadError& error, std::ostream* stream) {
    *stream << "failure " << static_cast<int>(error.reason) << " at byte " << error.byte;
}

}  // namespace store
