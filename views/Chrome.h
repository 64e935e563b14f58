#pragma once

#include <QFont>
#include <QRect>
#include <QSize>
#include <QString>

namespace views {

// What is common to the look of every screen: the choice of fonts and the height of the body. A value that is settled
// once, when the app starts, and handed to each screen. Main thread only.
class Chrome {
public:
    // `screen` is the device's screen in points, the system's status bar included.
    Chrome(bool hasHelveticaNeue, const QString& model, QSize screen);

    // Whether "HelveticaNeue-CondensedBold" was there when the app started; every view chooses its fonts by it.
    bool hasHelveticaNeue() const { return hasHelveticaNeue_; }

    // Points between the navigation bar and the bottom of the screen: 420, or 508 on a tall phone.
    int bodyHeight() const { return bodyHeight_; }

    // The part of the device's screen that is the app's, below the system's status bar. Points.
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

// A font by the platform's name for it ("Helvetica-Bold", "HelveticaNeue-Light"), in points, or the nearest one of a
// family with the same metrics. Fonts need the application object.
QFont fontWithName(QStringView name, int points);

// Whether a font of exactly this name is installed.
bool isFontInstalled(QStringView name);

// The rectangle with each of its four values rounded to the nearest whole point, halves away from zero.
QRect makeRoundedRect(float x, float y, float width, float height);

// The size of a single line of text, as the labels are laid out by it. Points.
QSizeF sizeWithFont(const QString& text, const QFont& font);

}  // namespace views
