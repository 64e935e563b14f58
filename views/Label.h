#pragma once

#include <QLabel>

class QColor;
class QFont;

namespace views {

// A single line of plain text without wrapping or elision, on a transparent background. Ignores mouse events.
QLabel* makeLabel(QWidget* parent, const QFont& font, const QColor& color);

// Sets the geometry of a label from the nominal frame of its text. Where marks extend beyond the font's height, as in
// many scripts, the label is enlarged at both sides; the text keeps its position.
void placeLabel(QLabel& label, const QRect& frame);

}  // namespace views
