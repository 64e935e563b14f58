#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <QImage>

namespace platform {

// Renders SVG images in a separate process, the module vexmor-icons. It is started by the first image and terminated by
// the destructor. Not thread-safe.
class IconPainter {
public:
    IconPainter() = default;
    ~IconPainter() { end(); }
    IconPainter(const IconPainter&) = delete;
    IconPainter& operator=(const IconPainter&) = delete;

    // Renders into a square of `side` pixels, centred with the aspect ratio kept. Null when the data is not SVG, when
    // rendering exceeds 1 s of processor time or 256 MB, or when the module is not installed. Blocks.
    QImage paint(const QByteArray& svg, int side);

private:
    void start();
    void end();

    int connection_ = -1;
    pid_t program_ = -1;
};

}  // namespace platform
