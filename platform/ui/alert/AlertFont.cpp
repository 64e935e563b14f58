#include "platform/ui/alert/AlertFont.h"

#include <QGuiApplication>

namespace platform {

QFont alertFont(int points, bool bold) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(points);  // Qt's font pixels are device-independent: points
    font.setBold(bold);
    return font;
}

}  // namespace platform
