#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace store {

class Value;

// What a property list says, in words that do not depend on who read it: "yes", "no", and behind a letter a number
// (modulo 2^64), the bits of a real, the seconds of a date since 1970, the bytes of a text or of data; elements in
// brackets, the entries of a dictionary in order.
namespace said {

std::string hexadecimal(std::string_view bytes);
std::string real(double real);
std::string integer(std::uint64_t integer);

}  // namespace said

std::string saidBy(const Value& value);

}  // namespace store
