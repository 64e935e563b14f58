// Whether what we chose ourselves can be read by people with little contrast vision. The colours that were given to us
// are listed in docs/accessibility.md, with theirs.
#include <gtest/gtest.h>

#include <QColor>
#include <QPixmap>
#include <algorithm>
#include <cmath>

#include "platform/ui/drawing/Images.h"
#include "resources/Resources.h"
#include "views/Palette.h"

namespace {

using namespace platform::palette;

const QColor white(Qt::white);

// Relative luminance and contrast as WCAG 2 defines them.
double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [darker, brighter] = std::minmax({luminance(a), luminance(b)});
    return (brighter + 0.05) / (darker + 0.05);
}

QColor over(const QColor& upper, const QColor& lower) {
    const float share = upper.alphaF();
    const auto mix = [share](float a, float b) { return a * share + b * (1 - share); };
    return QColor::fromRgbF(mix(upper.redF(), lower.redF()), mix(upper.greenF(), lower.greenF()),
                            mix(upper.blueF(), lower.blueF()));
}

TEST(Contrast, TextsCanBeReadAndTheFocusCanBeSeen) {
    resources::initialize();
    const QColor cap = platform::Images::named(QStringLiteral("CapSelected"), 1).toImage().pixelColor(53, 15);
    constexpr double text = 4.5;
    constexpr double mark = 3;
    const std::tuple<const char*, QColor, QColor, double> pairs[] = {
        {"text", ink, white, text},
        {"text of a row that is pressed", ink, over(pressedVeil, white), text},
        {"title of the button that matters", accentInk, white, text},
        {"the same, pressed", accentInk, over(pressedVeil, white), text},
        {"title of a button that destroys", redInk, white, text},
        {"the same, pressed", redInk, over(pressedVeil, white), text},
        {"what an empty field shows", hint, white, text},
        {"selected text", white, accentInk, text},
        {"Delete", white, red, text},
        {"Delete, pressed", white, pressedRed, text},
        {"the chosen order, Export", white, cap, text},
        {"focus in the bar", accentInk, bar, mark},
        {"focus on a row", accentInk, white, mark},
    };
    EXPECT_GT(contrast(white, Qt::black), 20.9) << "the measure itself";
    for (const auto& [what, ink, ground, least] : pairs) EXPECT_GE(contrast(ink, ground), least) << what;
}

}  // namespace
