#include "platform/ui/web/WebView.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QOpenGLContext>

#include "platform/modules/Modules.h"

QT_BEGIN_NAMESPACE
// Exported for the web engine's sake and in no header of Qt's public ones; the engine declares them in the same way.
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
QT_END_NAMESPACE

namespace platform {

namespace {

using MakeWebView = WebView* (*)(QWidget* parent);

// The engine will not run without a context that everything shares. One that is made at the app's start, as the
// engine's manual has it, costs every start 60 ms and 60 MB on X11. Our views are drawn without OpenGL, so the engine
// is content with a context that was never created.
void provideShareContext() {
    if (!qt_gl_global_share_context()) {
        qt_gl_set_global_share_context(new QOpenGLContext(QCoreApplication::instance()));
    }
}

MakeWebView loadModule() {
    provideShareContext();
    QLibrary module(findModule(QStringLiteral("libvexmorweb.so")));
    return reinterpret_cast<MakeWebView>(module.resolve("vexmorMakeWebView"));
}

}  // namespace

WebView* makeWebView(QWidget* parent) {
    static const MakeWebView make = loadModule();
    return make ? make(parent) : nullptr;
}

}  // namespace platform
