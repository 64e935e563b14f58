#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/plist/PropertyList.h"

namespace store {

// The text forms of dates, integers, reals and data. The readers take the text between an element's tags and say
// nothing when it is none; white space around it is tolerated.

// YYYY-MM-DDThh:mm:ssZ, a day of the calendar from year 1 to 9999.
std::optional<Date> parseDate(std::string_view text);

// Decimal or 0x hexadecimal, from -2^63 to 2^64-1.
struct Integer {
    bool isNegative = false;
    std::uint64_t magnitude = 0;

    // Nothing from 2^63 on.
    std::optional<std::int64_t> value() const;
};
std::optional<Integer> parseInteger(std::string_view text);

// "nan" and "inf" included; not what a double cannot hold.
std::optional<double> parseReal(std::string_view text);

// Base64, padded; white space anywhere.
std::optional<std::vector<std::byte>> parseData(std::string_view text);
bool isData(std::string_view text);

constexpr std::size_t dateLength = 20;
// Writes exactly dateLength characters. A date beyond the years 1 to 9999 becomes the nearest one within.
void formatDate(Date date, char* text);
std::string formatReal(double real);
// Without white space.
std::string formatData(const std::vector<std::byte>& data);

}  // namespace store
