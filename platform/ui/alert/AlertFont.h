#pragma once

#include <QFont>

namespace platform {

// The application's font at this size, in points, for the texts of an alert.
QFont alertFont(int points, bool bold);

}  // namespace platform
