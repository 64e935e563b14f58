#include "platform/ui/web/WebView.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QOpenGLContext>

#include "platform/modules/Modules.h"

QT_BEGIN_NAMESPACE
// Exported by Qt for the web engine but declared in no public header; the engine declares them itself, too.
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
QT_END_NAMESPACE

namespace platform {

namespace {

using MakeWebView = WebView* (*)(QWidget* parent);

// The engine requires a global share context. Creating it at start, as Qt's manual says, costs every start 60 ms and
// 60 MB on X11. Pages are drawn in software here, so a QOpenGLContext object that is never created is sufficient.
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
