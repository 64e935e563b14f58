#pragma once

#include <QList>

class QWidget;

namespace platform {

// The visible child widgets in the order in which a person reads them: line by line from the top, and from left to
// right where they stand beside one another.
QList<QWidget*> inReadingOrder(const QWidget* parent);

}  // namespace platform
