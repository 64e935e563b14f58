#pragma once

#include <QList>

class QWidget;

namespace platform {

// The visible child widgets in reading order: line by line from top to bottom, left to right within a line. A widget
// belongs to a line when its vertical centre lies above the bottom of the line's first widget.
QList<QWidget*> inReadingOrder(const QWidget* parent);

}  // namespace platform
