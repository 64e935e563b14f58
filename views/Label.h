#pragma once

#include <QLabel>

class QColor;
class QFont;

namespace views {

// A single line of plain text on a clear background: no wrapping, no eliding, transparent to touches.
QLabel* makeLabel(QWidget* parent, const QFont& font, const QColor& color);

}  // namespace views
