#include "screens/settings/CharacterWidths.h"

#include <QString>
#include <algorithm>

namespace screens {

namespace {

constexpr std::size_t characters = 0x110000;
constexpr float notMeasured = -1;

}  // namespace

CharacterWidths::CharacterWidths(const QFont& font) : font_(font), metrics_(font), widths_(characters, notMeasured) {}

float CharacterWidths::measure(char32_t character) {
    const auto width = float(metrics_.horizontalAdvance(QString::fromUcs4(&character, 1)));
    return widths_[character] = std::max(width, 0.0F);
}

}  // namespace screens
