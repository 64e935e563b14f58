#include "views/Chrome.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>
#include <array>
#include <cmath>
#include <limits>

namespace views {

namespace {

constexpr int barHeight = 40;
constexpr int statusBarHeight = 20;
constexpr int smallBodyHeight = 420;
constexpr int tallScreenGain = 88;
constexpr double tallScreenHeight = 568;

bool isTallPhone(const QString& model, QSize screen) {
    const bool isPhone = model == u"iPhone" || model == u"iPod";
    return isPhone && std::fabs(double(screen.height()) - tallScreenHeight) < std::numeric_limits<double>::epsilon();
}

// A font's name on the platform, taken apart the way font catalogs list it.
struct FontName {
    const char16_t* name;
    const char16_t* family;
    const char16_t* style;
    QFont::Weight weight;
    int stretch;
};

constexpr std::array fontNames{
    FontName{u"HelveticaNeue-CondensedBold", u"Helvetica Neue", u"Condensed Bold", QFont::Bold, QFont::Condensed},
    FontName{u"HelveticaNeue-Light", u"Helvetica Neue", u"Light", QFont::Light, QFont::Unstretched},
    FontName{u"HelveticaNeue", u"Helvetica Neue", u"Regular", QFont::Normal, QFont::Unstretched},
    FontName{u"Helvetica-Bold", u"Helvetica", u"Bold", QFont::Bold, QFont::Unstretched},
    FontName{u"Helvetica", u"Helvetica", u"Regular", QFont::Normal, QFont::Unstretched},
};

const FontName& lookUp(const QString& name) {
    for (const FontName& known : fontNames) {
        if (name == QStringView(known.name)) return known;
    }
    return fontNames.back();
}

}  // namespace

Chrome::Chrome(bool hasHelveticaNeue, const QString& model, QSize screen)
    : hasHelveticaNeue_(hasHelveticaNeue),
      bodyHeight_(smallBodyHeight + (isTallPhone(model, screen) ? tallScreenGain : 0)),
      windowSize_(screen.width(), std::max(screen.height() - statusBarHeight, barHeight + smallBodyHeight)) {}

QFont Chrome::barTitle() const {
    return fontWithName(
        hasHelveticaNeue_ ? QStringLiteral("HelveticaNeue-CondensedBold") : QStringLiteral("Helvetica-Bold"), 20);
}

QFont Chrome::rowTitle() const {
    return hasHelveticaNeue_ ? fontWithName(QStringLiteral("HelveticaNeue-CondensedBold"), 15)
                             : fontWithName(QStringLiteral("Helvetica-Bold"), 14);
}

QFont Chrome::rowUnderText() const {
    return fontWithName(hasHelveticaNeue_ ? QStringLiteral("HelveticaNeue-Light") : QStringLiteral("Helvetica"), 13);
}

QFont Chrome::bigText() const {
    return fontWithName(QStringLiteral("HelveticaNeue-CondensedBold"), 30);
}

QFont Chrome::smallText() const {
    return fontWithName(QStringLiteral("HelveticaNeue-Light"), 15);
}

QFont Chrome::button() const {
    return fontWithName(hasHelveticaNeue_ ? QStringLiteral("HelveticaNeue") : QStringLiteral("Helvetica"), 15);
}

QFont Chrome::helpText() const {
    return hasHelveticaNeue_ ? fontWithName(QStringLiteral("HelveticaNeue-Light"), 13)
                             : fontWithName(QStringLiteral("Helvetica"), 12);
}

QFont fontWithName(const QString& name, int points) {
    QFont font;
    if (QFontDatabase::hasFamily(name)) {
        font.setFamilies({name});
    } else {
        const FontName& known = lookUp(name);
        // Liberation Sans has the metrics of the family that the names ask for; the package list installs it.
        font.setFamilies({QStringView(known.family).toString(), QStringLiteral("Liberation Sans")});
        font.setWeight(known.weight);
        font.setStretch(known.stretch);
    }
    // The phone's points are the screen's device-independent pixels, whatever the desktop's font size.
    font.setPixelSize(points);
    return font;
}

bool isFontInstalled(const QString& name) {
    if (QFontDatabase::hasFamily(name)) return true;
    const FontName& known = lookUp(name);
    return name == QStringView(known.name) &&
           QFontDatabase::styles(QStringView(known.family).toString()).contains(QStringView(known.style));
}

QRect makeRoundedRect(float x, float y, float width, float height) {
    return {int(std::round(x)), int(std::round(y)), int(std::round(width)), int(std::round(height))};
}

QSizeF sizeWithFont(const QString& text, const QFont& font) {
    const QFontMetricsF metrics(font);
    return {metrics.horizontalAdvance(text), metrics.height()};
}

}  // namespace views
