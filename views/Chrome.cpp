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

constexpr QStringView condensedBold = u"HelveticaNeue-CondensedBold";
constexpr QStringView light = u"HelveticaNeue-Light";

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

const FontName& lookUp(QStringView name) {
    for (const FontName& known : fontNames) {
        if (name == QStringView(known.name)) return known;
    }
    return fontNames.back();
}

// A font that asks for a family which is not there sends Qt looking for what is most like it, at every start.
QString installedFamily(const FontName& font) {
    static const QStringList installed = QFontDatabase::families();
    for (const char16_t* name : {font.name, font.family}) {
        if (installed.contains(QStringView(name), Qt::CaseInsensitive)) return QString::fromUtf16(name);
    }
    // It has the metrics of the family that the names ask for; the package list installs it.
    return QStringLiteral("Liberation Sans");
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
    const FontName& known = lookUp(name);
    QFont font;
    font.setFamily(installedFamily(known));
    font.setWeight(known.weight);
    font.setStretch(known.stretch);
    // The phone's points are the screen's device-independent pixels, whatever the desktop's font size.
    font.setPixelSize(points);
    return font;
}

bool isFontInstalled(QStringView name) {
    if (QFontDatabase::hasFamily(name.toString())) return true;
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
