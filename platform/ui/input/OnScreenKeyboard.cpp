#include "platform/ui/input/OnScreenKeyboard.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QRectF>
#include <QWidget>
#include <QWindow>
#include <cmath>

#include "platform/ui/input/Focus.h"

namespace platform::OnScreenKeyboard {

int coveredHeight(const QWidget* widget) {
    const QWidget* window = widget->window();
    // Checked first: without keyboard and pointer, Qt's Wayland input method crashes on the calls below.
    const QWindow* focused = QGuiApplication::focusWindow();
    if (!focused || focused != window->windowHandle()) return 0;
    const QInputMethod* keyboard = QGuiApplication::inputMethod();
    if (!keyboard->isVisible()) return 0;
    const QRectF frame = keyboard->keyboardRectangle();  // in the window's coordinates
    const bool standsAtLowerEdge = frame.top() > 0 && frame.bottom() >= window->height();
    if (frame.isEmpty() || !standsAtLowerEdge) return 0;
    const int lowerEdge = widget->mapTo(window, QPoint(0, widget->height())).y();
    return qBound(0, lowerEdge - int(std::floor(frame.top())), widget->height());
}

void whenMoved(QObject* context, const std::function<void()>& moved) {
    const QInputMethod* keyboard = QGuiApplication::inputMethod();
    QObject::connect(keyboard, &QInputMethod::keyboardRectangleChanged, context, moved);
    QObject::connect(keyboard, &QInputMethod::visibleChanged, context, moved);
}

void followFocus(QObject* context) {
    QObject::connect(qApp, &QGuiApplication::focusObjectChanged, context, [](QObject* focused) {
        const auto* widget = qobject_cast<QWidget*>(focused);
        if (!widget) return;
        QGuiApplication::inputMethod()->setVisible(Focus::isTextField(widget));
    });
}

}  // namespace platform::OnScreenKeyboard
