#include "platform/ui/drawing/Images.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QPair>
#include <QSvgRenderer>
#include <cmath>
#include <memory>

namespace platform::Images {

namespace {

// Cleared before the application object is destroyed: pixmaps must not outlive it.
QHash<QPair<QString, double>, QPixmap>& pixmaps() {
    static QHash<QPair<QString, double>, QPixmap> cache;
    [[maybe_unused]] static const bool cleared = [] {
        qAddPostRoutine([] { pixmaps().clear(); });
        return true;
    }();
    return cache;
}

// A file name extension in `name` is ignored: "textfield.png" is the resource textfield.svg.
QString path(const QString& name) {
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return QStringLiteral(":/images/%1.svg").arg(dot < 0 ? name : name.left(dot));
}

// Parsed once for the size and for each scale; nullptr where there is no such image.
std::shared_ptr<QSvgRenderer> renderer(const QString& name) {
    static QHash<QString, std::shared_ptr<QSvgRenderer>> cache;
    const auto found = cache.constFind(name);
    if (found != cache.constEnd()) return *found;
    const QString file = path(name);
    return *cache.insert(name, QFile::exists(file) ? std::make_shared<QSvgRenderer>(file) : nullptr);
}

// Uses QtSvg: 2 ms and 1.3 MB for the images of the first screen. librsvg, which draws the apps' icons, takes 13 ms and
// 13 MB. PNG files made at build time would take 3 ms and fit fixed scales only.
QPixmap painted(const QString& name, double scale) {
    const QSize points = size(name);
    if (points.isEmpty() || scale <= 0) return {};
    QPixmap pixmap(static_cast<int>(std::ceil(points.width() * scale)),
                   static_cast<int>(std::ceil(points.height() * scale)));
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer(name)->render(&painter, QRectF(QPointF(0, 0), points));
    return pixmap;
}

}  // namespace

QPixmap named(const QString& name, double scale) {
    const QPair<QString, double> key(name, scale);
    auto& cache = pixmaps();
    auto found = cache.constFind(key);
    if (found == cache.constEnd()) found = cache.insert(key, painted(name, scale));
    return *found;
}

QSize size(const QString& name) {
    const auto image = renderer(name);
    return image ? image->defaultSize() : QSize();
}

}  // namespace platform::Images
