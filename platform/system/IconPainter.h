#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <QImage>

namespace platform {

// Has SVG pictures drawn by the module for them, a program that starts with the first picture and ends with this
// object. One thread at a time.
class IconPainter {
public:
    IconPainter() = default;
    ~IconPainter() { end(); }
    IconPainter(const IconPainter&) = delete;
    IconPainter& operator=(const IconPainter&) = delete;

    // A square of `side` pixels, the picture whole and centred. Null when it is none, when drawing it takes more than a
    // second of processor time or 256 MB, or when the module is not installed.
    QImage paint(const QByteArray& svg, int side);

private:
    void start();
    void end();

    int connection_ = -1;
    pid_t program_ = -1;
};

}  // namespace platform
