#include "store/peers/Said.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include "store/plist/PropertyList.h"

namespace store {

namespace {

std::string hexadecimal(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += digits[static_cast<unsigned char>(byte) >> 4];
        text += digits[static_cast<unsigned char>(byte) & 0xF];
    }
    return text;
}

std::string real(double real) {
    if (std::isnan(real)) return "nan";
    const auto bits = std::bit_cast<std::uint64_t>(real);
    std::string bytes;
    for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(bits >> shift & 0xFF);
    return "r" + hexadecimal(bytes);
}

std::string list(char open, const std::vector<std::string>& elements, char close) {
    std::string text(1, open);
    for (const std::string& element : elements) text += (text.size() > 1 ? "," : "") + element;
    return text + close;
}

// A number that has no sign of its own is found in its text.
std::uint64_t integerOf(const Value& value) {
    if (const auto integer = value.integer()) return static_cast<std::uint64_t>(*integer);
    const Slice slice = sliceOf(value);
    return std::stoull(std::string(std::find(slice.begin, slice.end, '>') + 1, slice.end));
}

}  // namespace

std::string saidBy(const Value& value) {
    std::vector<std::string> elements;
    switch (value.kind()) {
        case Kind::string:
            return "s" + hexadecimal(*value.string());
        case Kind::boolean:
            return *value.boolean() ? "yes" : "no";
        case Kind::date:
            return "d" + std::to_string(value.date()->time_since_epoch().count());
        case Kind::integer:
            return "i" + std::to_string(integerOf(value));
        case Kind::real:
            return real(*value.real());
        case Kind::data: {
            const auto data = *value.data();
            return "x" + hexadecimal({reinterpret_cast<const char*>(data.data()), data.size()});
        }
        case Kind::array: {
            const Array array = *value.array();
            for (const Value& element : array) elements.push_back(saidBy(element));
            return list('[', elements, ']');
        }
        case Kind::dictionary:
            break;
    }
    const Dictionary dictionary = *value.dictionary();
    for (const auto& [key, element] : dictionary) elements.push_back("s" + hexadecimal(key) + "=" + saidBy(element));
    std::sort(elements.begin(), elements.end());
    return list('{', elements, '}');
}

}  // namespace store
