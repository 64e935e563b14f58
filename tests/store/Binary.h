#pragma once

#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace store {

// A file in the making: objects as bytes, references and offsets of one byte each unless said otherwise.
struct Binary {
    std::vector<std::string> objects;
    std::uint64_t top = 0;
    unsigned offsetSize = 1;
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

// {"a": the object, with whatever objects it refers to from number 3 on}.
inline std::string holding(const std::string& object, const std::vector<std::string>& others = {}) {
    Binary binary{{"\xD1\x01\x02",
                   "\x51"
                   "a",
                   object}};
    binary.offsetSize = 2;
    binary.objects.insert(binary.objects.end(), others.begin(), others.end());
    return binary.bytes();
}

inline std::string real(double value) {
    return Binary::number(std::bit_cast<std::uint64_t>(value), 8);
}

}  // namespace store
