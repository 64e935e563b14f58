#pragma once

#include <QLabel>

class QColor;
class QFont;

namespace views {

// A single line of plain text on a clear background: no wrapping, no eliding, transparent to touches.
QLabel* makeLabel(QWidget* parent, const QFont& font, const QColor& color);

// Places a label by the frame that its text measures. Marks above or below the line that the font's own height has no
// room for, as many scripts write them, make the label higher; the text stays where it is.
void placeLabel(QLabel& label, const QRect& frame);

}  // namespace views
