#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <vector>

namespace screens {

// How far each character of a font moves the next one, measured once per character, by the thread that made this.
// Points.
class CharacterWidths {
public:
    explicit CharacterWidths(const QFont& font);

    const QFont& font() const { return font_; }

    float of(char32_t character) {
        const float width = measured(character);
        return width >= 0 ? width : measure(character);
    }

    // Negative for a character that was not measured yet. May be asked by several threads as long as none measures.
    float measured(char32_t character) const { return widths_[character]; }

private:
    float measure(char32_t character);

    QFont font_;
    QFontMetricsF metrics_;
    std::vector<float> widths_;  // by character; negative where not measured yet
};

}  // namespace screens
