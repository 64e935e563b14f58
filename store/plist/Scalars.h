#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/plist/PropertyList.h"

namespace store {

// Parses and formats the text of dates, integers, reals and data. Parsers take the text between an element's tags,
// ignore white space around it and return nothing when it is malformed.

// YYYY-MM-DDThh:mm:ssZ, a valid calendar date of the years 1 to 9999.
std::optional<Date> parseDate(std::string_view text);

// Decimal or 0x hexadecimal, from -2^63 to 2^64-1.
struct Integer {
    bool isNegative = false;
    std::uint64_t magnitude = 0;

    // Nothing for 2^63 and above.
    std::optional<std::int64_t> value() const;
};
std::optional<Integer> parseInteger(std::string_view text);

// "nan" and "inf" included. Nothing for values out of a double's range.
std::optional<double> parseReal(std::string_view text);

// Padded Base64; white space anywhere is ignored.
std::optional<std::vector<std::byte>> parseData(std::string_view text);
bool isData(std::string_view text);

constexpr std::size_t dateLength = 20;
// Writes exactly dateLength characters, no terminator. Dates are clamped to the years 1 to 9999.
void formatDate(Date date, char* text);
std::string formatReal(double real);
// Without white space.
std::string formatData(const std::vector<std::byte>& data);

}  // namespace store
