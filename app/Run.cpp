#include "app/Run.h"

#include <QApplication>
#include <QPalette>

#include "app/Termination.h"
#include "app/VxmAppDelegate.h"
#include "resources/Resources.h"
#include "views/Chrome.h"
#include "views/Palette.h"

namespace app {

namespace {

QPalette appPalette() {
    QPalette colours(views::palette::bar);
    colours.setColor(QPalette::Window, Qt::white);
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::Highlight, views::palette::accent);
    colours.setColor(QPalette::HighlightedText, Qt::white);
    colours.setColor(QPalette::PlaceholderText, views::palette::quiet);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colours.setColor(role, views::palette::ink);
    }
    return colours;
}

}  // namespace

void prepare() {
    QApplication::setDesktopSettingsAware(false);
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setPalette(appPalette());
}

int run(QApplication& application, const platform::Device& device) {
    resources::initialize();
    QApplication::setFont(views::fontWithName(QStringLiteral("Helvetica"), 14));
    quitOnTerminationSignals();
    VxmAppDelegate delegate(device);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &application,
                     [&delegate] { delegate.applicationWillTerminate(); });
    delegate.didFinishLaunching();
    return QApplication::exec();
}

}  // namespace app
