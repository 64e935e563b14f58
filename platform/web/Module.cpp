#include <unistd.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <utility>

#include "platform/web/EngineView.h"

namespace {

// Root cannot have the engine's sandbox, and without it the engine ends the whole program as it starts, unless whoever
// started the program has given the sandbox up.
bool canStart() {
    if (geteuid() != 0 || qEnvironmentVariableIntValue("QTWEBENGINE_DISABLE_SANDBOX") == 1) return true;
    constexpr auto option = "--no-sandbox";
    return qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").split(' ').contains(option) ||
           QCoreApplication::arguments().contains(QLatin1String(option));
}

// Left to itself the engine keeps its pages from screen readers. It asks for its options once, as it starts.
void letAssistanceIn() {
    if (!QAccessible::isActive()) return;
    constexpr auto options = "QTWEBENGINE_CHROMIUM_FLAGS";
    qputenv(options, qgetenv(options) + " --force-renderer-accessibility");
}

// Pages of text need no graphics card: drawn in software they look the same on every machine, and the window keeps its
// surface when the first page is shown in it. The engine reports at length, and as a warning, that it found no card.
platform::EngineView* makeFirstView(QWidget* parent) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext=false\ndefault.warning=false"));
    letAssistanceIn();
    auto* view = new platform::EngineView(parent);
    QLoggingCategory::setFilterRules({});
    return view;
}

}  // namespace

// The module's only door, found by its name; see makeWebView().
extern "C" Q_DECL_EXPORT platform::WebView* vexmorMakeWebView(QWidget* parent) {
    static bool isPrepared = false;
    if (!isPrepared && !canStart()) return nullptr;
    return std::exchange(isPrepared, true) ? new platform::EngineView(parent) : makeFirstView(parent);
}
