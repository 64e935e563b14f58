#pragma once

#include <QPixmap>
#include <QString>

namespace platform::Images {

// The image resource of this name ("AddButton"), painted from its vector source at `scale` device pixels per point
// and cached. A null pixmap when there is none of that name. Main thread only.
QPixmap named(const QString& name, double scale);

// Its size in points; empty when there is none of that name.
QSize size(const QString& name);

}  // namespace platform::Images
