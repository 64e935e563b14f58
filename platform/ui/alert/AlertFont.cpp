#include "platform/ui/alert/AlertFont.h"

#include <QGuiApplication>

namespace platform {

QFont alertFont(int points, bool bold) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(points);  // a pixel of a font is a point of the screen
    font.setBold(bold);
    return font;
}

}  // namespace platform
