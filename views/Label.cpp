#include "views/Label.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QTextLayout>
#include <QtMath>
#include <algorithm>

namespace views {

namespace {

// Characters for which a font's ascent and descent are made, and no other's that would take their place.
bool isAscii(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

// Points by which a text centred in `height` extends beyond it, at the top or at the bottom.
int reachBeyond(const QLabel& label, int height) {
    const QFontMetricsF metrics(label.font());
    if (height >= metrics.height() && isAscii(label.text())) return 0;  // most texts: measuring them takes longer
    QTextLayout layout(label.text(), label.font());
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    if (!line.isValid()) return 0;
    const QRectF ink = metrics.tightBoundingRect(label.text());
    const double baseline = (height - line.height()) / 2 + line.ascent();
    return qCeil(std::max({0.0, -(baseline + ink.top()), baseline + ink.bottom() - height}));
}

}  // namespace

QLabel* makeLabel(QWidget* parent, const QFont& font, const QColor& color) {
    auto* label = new QLabel(parent);
    label->setFont(font);
    label->setTextFormat(Qt::PlainText);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    return label;
}

void placeLabel(QLabel& label, const QRect& frame) {
    const int beyond = reachBeyond(label, frame.height());
    label.setGeometry(frame.adjusted(0, -beyond, 0, beyond));
}

}  // namespace views
