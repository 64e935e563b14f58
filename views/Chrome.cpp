#include "views/Chrome.h"

#include <QFontMetricsF>
#include <array>
#include <cmath>
#include <limits>

#include "platform/system/Fonts.h"

namespace views {

namespace {

constexpr int barHeight = 40;
constexpr int statusBarHeight = 20;
constexpr int smallBodyHeight = 420;
constexpr int tallScreenGain = 88;
constexpr double tallScreenHeight = 568;

constexpr QStringView condensedBold = u"HelveticaNeue-CondensedBold";
constexpr QStringView light = u"HelveticaNeue-Light";

bool isTallPhone(const QString& model, QSize screen) {
    const bool isPhone = model == u"iPhone" || model == u"iPod";
    return isPhone && std::fabs(double(screen.height()) - tallScreenHeight) < std::numeric_limits<double>::epsilon();
}

// The properties of a font that are kept when another one replaces it.
struct FontLook {
    const char16_t* name;
    QFont::Weight weight;
    int stretch;
};

constexpr std::array fontLooks{
    FontLook{u"HelveticaNeue-CondensedBold", QFont::Bold, QFont::Condensed},
    FontLook{u"HelveticaNeue-Light", QFont::Light, QFont::Unstretched},
    FontLook{u"HelveticaNeue", QFont::Normal, QFont::Unstretched},
    FontLook{u"Helvetica-Bold", QFont::Bold, QFont::Unstretched},
    FontLook{u"Helvetica", QFont::Normal, QFont::Unstretched},
};

const FontLook& lookOf(QStringView name) {
    for (const FontLook& known : fontLooks) {
        if (name == QStringView(known.name)) return known;
    }
    return fontLooks.back();
}

}  // namespace

Chrome::Chrome(bool hasHelveticaNeue, const QString& model, QSize screen)
    : hasHelveticaNeue_(hasHelveticaNeue),
      bodyHeight_(smallBodyHeight + (isTallPhone(model, screen) ? tallScreenGain : 0)),
      windowSize_(screen.width(), std::max(screen.height() - statusBarHeight, barHeight + smallBodyHeight)),
      bigText_(fontWithName(condensedBold, 30)),
      smallText_(fontWithName(light, 15)) {
    if (hasHelveticaNeue) {
        barTitle_ = fontWithName(condensedBold, 20);
        rowTitle_ = fontWithName(condensedBold, 15);
        rowUnderText_ = fontWithName(light, 13);
        button_ = fontWithName(u"HelveticaNeue", 15);
        helpText_ = fontWithName(light, 13);
    } else {
        barTitle_ = fontWithName(u"Helvetica-Bold", 20);
        rowTitle_ = fontWithName(u"Helvetica-Bold", 14);
        rowUnderText_ = fontWithName(u"Helvetica", 13);
        button_ = fontWithName(u"Helvetica", 15);
        helpText_ = fontWithName(u"Helvetica", 12);
    }
}

QFont fontWithName(QStringView name, int points) {
    QFont font;
    if (const auto face = platform::fontFace(name.toString())) {
        font.setFamily(face->family);
        font.setStyleName(face->style);
    } else {
        // Metric-compatible with the missing family and installed by the package. Setting a missing family would make
        // Qt search all fonts for a substitute at every start.
        const FontLook& look = lookOf(name);
        font.setFamily(QStringLiteral("Liberation Sans"));
        font.setWeight(look.weight);
        font.setStretch(look.stretch);
    }
    // A point is a device-independent pixel, independent of the desktop's font size.
    font.setPixelSize(points);
    return font;
}

bool isFontInstalled(QStringView name) {
    return platform::fontFace(name.toString()).has_value();
}

QRect makeRoundedRect(float x, float y, float width, float height) {
    return {int(std::round(x)), int(std::round(y)), int(std::round(width)), int(std::round(height))};
}

QSizeF sizeWithFont(const QString& text, const QFont& font) {
    const QFontMetricsF metrics(font);
    return {metrics.horizontalAdvance(text), metrics.height()};
}

}  // namespace views
