#include <unistd.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <utility>

#include "platform/web/EngineView.h"

namespace {

// The engine's sandbox is not available to root. Unless it is disabled explicitly, the engine then terminates the whole
// process at its start.
bool canStart() {
    if (geteuid() != 0 || qEnvironmentVariableIntValue("QTWEBENGINE_DISABLE_SANDBOX") == 1) return true;
    constexpr auto option = "--no-sandbox";
    return qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").split(' ').contains(option) ||
           QCoreApplication::arguments().contains(QLatin1String(option));
}

// The engine exposes pages to screen readers only with this option, which it reads once, at its start.
void letAssistanceIn() {
    if (!QAccessible::isActive()) return;
    constexpr auto options = "QTWEBENGINE_CHROMIUM_FLAGS";
    qputenv(options, qgetenv(options) + " --force-renderer-accessibility");
}

// Software rendering: sufficient for text, identical on every machine, and the window keeps its surface type when the
// first page is shown. The engine's warnings about missing GPU support are filtered during its start.
platform::EngineView* makeFirstView(QWidget* parent) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext=false\ndefault.warning=false"));
    letAssistanceIn();
    auto* view = new platform::EngineView(parent);
    QLoggingCategory::setFilterRules({});
    return view;
}

}  // namespace

// The module's only exported symbol, resolved by makeWebView().
extern "C" Q_DECL_EXPORT platform::WebView* vexmorMakeWebView(QWidget* parent) {
    static bool isPrepared = false;
    if (!isPrepared && !canStart()) return nullptr;
    return std::exchange(isPrepared, true) ? new platform::EngineView(parent) : makeFirstView(parent);
}
