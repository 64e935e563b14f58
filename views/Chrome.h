#pragma once

#include <QFont>
#include <QRect>
#include <QSize>
#include <QString>

namespace views {

// The layout parameters common to all screens: fonts and the height of the body. Created once, at the start of the app,
// and passed to each screen. Main thread only.
class Chrome {
public:
    // `screen` is the device's screen in points, the system's status bar included.
    Chrome(bool hasHelveticaNeue, const QString& model, QSize screen);

    // Whether "HelveticaNeue-CondensedBold" was installed at the start of the app. The choice of fonts depends on it.
    bool hasHelveticaNeue() const { return hasHelveticaNeue_; }

    // Points between the navigation bar and the bottom of the screen: 420, or 508 on a tall phone.
    int bodyHeight() const { return bodyHeight_; }

    // The size of the app's window: the screen without the system's status bar. Points.
    QSize windowSize() const { return windowSize_; }

    // The fonts of the views, by their role; sizes in points.
    const QFont& barTitle() const { return barTitle_; }          // condensed bold 20
    const QFont& rowTitle() const { return rowTitle_; }          // condensed bold 15, or bold 14
    const QFont& rowUnderText() const { return rowUnderText_; }  // light 13
    const QFont& bigText() const { return bigText_; }            // condensed bold 30
    const QFont& smallText() const { return smallText_; }        // light 15
    const QFont& button() const { return button_; }              // regular 15
    const QFont& helpText() const { return helpText_; }          // light 13, or regular 12

private:
    bool hasHelveticaNeue_;
    int bodyHeight_;
    QSize windowSize_;
    QFont barTitle_;
    QFont rowTitle_;
    QFont rowUnderText_;
    QFont bigText_;
    QFont smallText_;
    QFont button_;
    QFont helpText_;
};

// The font of a PostScript name ("Helvetica-Bold"), in points; if it is not installed, the nearest font of a
// metric-compatible family. Needs the application object.
QFont fontWithName(QStringView name, int points);

// Whether a font of this PostScript name is installed.
bool isFontInstalled(QStringView name);

// The rectangle with each of its four values rounded to the nearest whole point, halves away from zero.
QRect makeRoundedRect(float x, float y, float width, float height);

// The size of a single line of text, by which labels are laid out. Points.
QSizeF sizeWithFont(const QString& text, const QFont& font);

}  // namespace views
