#include "platform/system/IconImage.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <cmath>

#include "platform/system/RegularFile.h"

namespace platform {

namespace {

constexpr qint64 longestFile = 16 << 20;

QImage emptyIcon(int points, double scale) {
    const int pixels = static_cast<int>(std::ceil(points * scale));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QRectF centred(const QSizeF& size, const QRect& square) {
    QRectF frame({}, size.scaled(square.size(), Qt::KeepAspectRatio));
    frame.moveCenter(QRectF(square).center());
    return frame;
}

QImage renderVectors(const QByteArray& bytes, int points, double scale) {
    QSvgRenderer renderer;
    if (!renderer.load(bytes) || renderer.defaultSize().isEmpty()) return {};
    QImage icon = emptyIcon(points, scale);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, centred(renderer.viewBoxF().size(), icon.rect()));
    return icon;
}

QImage renderPixels(QByteArray bytes, int points, double scale) {
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    const QImage image = reader.read();
    if (image.isNull()) return {};
    QImage icon = emptyIcon(points, scale);
    const QRect frame = centred(image.size(), icon.rect()).toRect();
    // Scaled before it is painted: painting takes too few of the pixels of a large image into account.
    QPainter(&icon).drawImage(frame.topLeft(), image.scaled(frame.size().expandedTo({1, 1}), Qt::IgnoreAspectRatio,
                                                            Qt::SmoothTransformation));
    return icon;
}

QImage withScale(QImage icon, double scale) {
    if (!icon.isNull()) icon.setDevicePixelRatio(scale);
    return icon;
}

QImage drawGenericIcon(int points, double scale) {
    QImage icon = emptyIcon(points, scale);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(QPen(QColor(161, 176, 176), 1));
    painter.drawRoundedRect(QRectF(1.5, 1.5, points - 3, points - 3), 6, 6);
    return icon;
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
    QImage icon;
    QFile resource(QStringLiteral(":/images/DefaultAppIcon.svg"));
    if (resource.open(QIODevice::ReadOnly)) icon = renderVectors(resource.readAll(), points, scale);
    return withScale(icon.isNull() ? drawGenericIcon(points, scale) : icon, scale);
}

}  // namespace platform
