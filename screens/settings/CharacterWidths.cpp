#include "screens/settings/CharacterWidths.h"

#include <QString>
#include <algorithm>

namespace screens {

namespace {

constexpr std::size_t characters = 0x110000;
constexpr float notMeasured = -1;

// A mark has no width of its own in a text, but on its own, as here, it may be drawn on a stand-in for its base.
bool isMark(char32_t character) {
    const QChar::Category category = QChar::category(character);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing;
}

}  // namespace

CharacterWidths::CharacterWidths(const QFont& font) : font_(font), metrics_(font), widths_(characters, notMeasured) {}

float CharacterWidths::measure(char32_t character) {
    const auto width = isMark(character) ? 0 : float(metrics_.horizontalAdvance(QString::fromUcs4(&character, 1)));
    return widths_[character] = std::max(width, 0.0F);
}

}  // namespace screens
