#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <vector>

namespace screens {

// How far each character of a font moves the next one, measured once per character. Points.
class CharacterWidths {
public:
    explicit CharacterWidths(const QFont& font);

    const QFont& font() const { return font_; }

    float of(char32_t character) {
        const float width = widths_[character];
        return width >= 0 ? width : measure(character);
    }

private:
    float measure(char32_t character);

    QFont font_;
    QFontMetricsF metrics_;
    std::vector<float> widths_;  // by character; negative where not measured yet
};

}  // namespace screens
