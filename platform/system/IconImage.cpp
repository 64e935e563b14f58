#include "platform/system/IconImage.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <cmath>

#include "platform/desktop/RegularFile.h"
#include "platform/system/IconPainter.h"

namespace platform {

namespace {

constexpr qint64 longestFile = 16 << 20;

int pixelsOf(int points, double scale) {
    return static_cast<int>(std::ceil(points * scale));
}

QImage emptyIcon(int points, double scale) {
    const int pixels = pixelsOf(points, scale);
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QRectF centred(const QSizeF& size, const QRect& square) {
    QRectF frame({}, size.scaled(square.size(), Qt::KeepAspectRatio));
    frame.moveCenter(QRectF(square).center());
    return frame;
}

// One rendering process per thread. An icon thread lasts as long as its queue has icons, so the process is reused.
QImage renderVectors(const QByteArray& bytes, int points, double scale) {
    thread_local IconPainter painter;
    return painter.paint(bytes, pixelsOf(points, scale));
}

QImage renderPixels(QByteArray bytes, int points, double scale) {
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    const QImage image = reader.read();
    if (image.isNull()) return {};
    QImage icon = emptyIcon(points, scale);
    const QRect frame = centred(image.size(), icon.rect()).toRect();
    // QImage::scaled() averages all pixels; drawing scaled would sample too few of a large image.
    QPainter(&icon).drawImage(frame.topLeft(), image.scaled(frame.size().expandedTo({1, 1}), Qt::IgnoreAspectRatio,
                                                            Qt::SmoothTransformation));
    return icon;
}

QImage withScale(QImage icon, double scale) {
    if (!icon.isNull()) icon.setDevicePixelRatio(scale);
    return icon;
}

void drawGenericIcon(QPainter& painter, int points, double scale) {
    painter.scale(scale, scale);
    painter.setPen(QPen(QColor(161, 176, 176), 1));
    painter.drawRoundedRect(QRectF(1.5, 1.5, points - 3, points - 3), 6, 6);
}

}  // namespace

QImage readIcon(const std::filesystem::path& file, int points, double scale) {
    const auto bytes = readRegularFile(file, longestFile);
    if (!bytes || bytes->isEmpty()) return {};
    const auto extension = file.extension();
    const bool isVector = extension == ".svg" || extension == ".svgz";
    return withScale(isVector ? renderVectors(*bytes, points, scale) : renderPixels(*bytes, points, scale), scale);
}

QImage genericIcon(int points, double scale) {
    QImage icon = emptyIcon(points, scale);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    if (QSvgRenderer own(QStringLiteral(":/images/DefaultAppIcon.svg")); own.isValid())
        own.render(&painter, icon.rect());
    else
        drawGenericIcon(painter, points, scale);
    painter.end();
    return withScale(icon, scale);
}

}  // namespace platform
