#pragma once

#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace store {

// A file in the making: objects as bytes.
struct Binary {
    std::vector<std::string> objects;
    std::uint64_t top = 0;
    unsigned offsetSize = 4;
    unsigned referenceSize = 1;
    std::optional<std::uint64_t> count = std::nullopt;
    std::optional<std::uint64_t> table = std::nullopt;

    static std::string number(std::uint64_t value, unsigned size) {
        std::string bytes;
        for (unsigned i = size; i > 0; --i)
            bytes.push_back(i > 8 ? '\0' : static_cast<char>(value >> (8 * (i - 1)) & 0xFF));
        return bytes;
    }

    std::string bytes() const {
        std::string file = "bplist00", offsets;
        for (const std::string& object : objects) {
            offsets += number(file.size(), offsetSize);
            file += object;
        }
        std::uint64_t begin = file.size();
        return file + offsets + std::string(6, '\0') + number(offsetSize, 1) + number(referenceSize, 1) +
               number(count.value_or(objects.size()), 8) + number(top, 8) + number(table.value_or(begin), 8);
    }
};

inline std::string ascii(std::string_view text) {
    return static_cast<char>(0x50 + text.size()) + std::string(text);
}

// {"a": the object, with whatever objects it refers to from number 3 on}, by references of a size.
inline Binary holder(const std::string& object, const std::vector<std::string>& others = {}, unsigned size = 1) {
    Binary binary{{"\xD1" + Binary::number(1, size) + Binary::number(2, size), ascii("a"), object}};
    binary.referenceSize = size;
    binary.objects.insert(binary.objects.end(), others.begin(), others.end());
    return binary;
}

inline std::string holding(const std::string& object, const std::vector<std::string>& others = {}, unsigned size = 1) {
    return holder(object, others, size).bytes();
}

inline std::string real(double value) {
    return Binary::number(std::bit_cast<std::uint64_t>(value), 8);
}

}  // namespace store
