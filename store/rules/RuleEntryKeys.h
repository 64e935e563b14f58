#pragma once

#include <string_view>

namespace store::keys {

// Keys of a rule list's entries.
inline constexpr std::string_view rule = "rule";
inline constexpr std::string_view date = "date";

}  // namespace store::keys
