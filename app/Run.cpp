#include "app/Run.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>

#include "app/SingleInstance.h"
#include "app/Termination.h"
#include "app/VxmAppDelegate.h"
#include "platform/system/Fonts.h"
#include "resources/Resources.h"
#include "views/Chrome.h"
#include "views/Palette.h"

namespace app {

namespace {

QString styleName() {
    return QStringLiteral("fusion");
}

QPalette appPalette() {
    QPalette colours(views::palette::bar);
    colours.setColor(QPalette::Window, Qt::white);
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::Highlight, views::palette::accentInk);
    colours.setColor(QPalette::HighlightedText, Qt::white);
    colours.setColor(QPalette::PlaceholderText, views::palette::hint);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colours.setColor(role, views::palette::ink);
    }
    return colours;
}

}  // namespace

std::jthread prepare() {
    std::jthread fonts = platform::readFontsAhead();
    QApplication::setDesktopSettingsAware(false);
    QApplication::setStyle(styleName());
    QApplication::setPalette(appPalette());
    return fonts;
}

int run(QApplication& application, const platform::Device& device, const SingleInstance& instance, std::jthread fonts) {
    resources::initialize();
    // QT_STYLE_OVERRIDE takes precedence over the style that prepare() has set.
    if (QApplication::style()->name() != styleName()) QApplication::setStyle(styleName());
    if (fonts.joinable()) fonts.join();
    QApplication::setFont(views::fontWithName(QStringLiteral("Helvetica"), 14));
    quitOnTerminationSignals();
    VxmAppDelegate delegate(device);
    callAtEnd([&delegate] { delegate.applicationWillTerminate(); });
    delegate.didFinishLaunching();
    instance.answer(*delegate.window(), [&delegate](const QByteArray& token) { delegate.bringToFront(token); });
    return application.exec();
}

}  // namespace app
