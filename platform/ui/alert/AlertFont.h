#pragma once

#include <QFont>

namespace platform {

// The font of what an alert says: the application's, in points.
QFont alertFont(int points, bool bold);

}  // namespace platform
