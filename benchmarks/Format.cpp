#include "benchmarks/Format.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace bench {

namespace {

std::string number(const char* format, double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

// Three figures, whatever the size.
std::string threeFigures(double value, std::string_view unit) {
    return number(value < 10 ? "%.2f " : value < 100 ? "%.1f " : "%.0f ", value) + std::string(unit);
}

}  // namespace

std::string figureText(double figure, Unit unit) {
    if (unit == Unit::bytes) return threeFigures(figure / 1e6, "MB");
    if (figure >= 1) return threeFigures(figure, "s");
    if (figure >= 1e-3) return threeFigures(figure * 1e3, "ms");
    return figure >= 1e-6 ? threeFigures(figure * 1e6, "us") : threeFigures(figure * 1e9, "ns");
}

std::string ratioText(const Row& row) {
    return number("%.2fx", row.ratio()) + (row.goal.kind == Goal::Kind::fasterBy ? " faster" : "");
}

std::string goalText(const Goal& goal) {
    return goal.kind == Goal::Kind::atMost ? number("at most %gx", goal.factor) : number("%gx faster", goal.factor);
}

std::string countText(std::size_t count) {
    std::string text = std::to_string(count);
    for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, 1, ',');
    return text;
}

}  // namespace bench
