#pragma once

#include <string>

namespace store {

class Value;

// What a property list says, in words that do not depend on who read it: "yes", "no", and behind a letter a number
// (modulo 2^64), the bits of a real, the seconds of a date since 1970, the bytes of a text or of data; elements in
// brackets, the entries of a dictionary in order.
std::string saidBy(const Value& value);

}  // namespace store
