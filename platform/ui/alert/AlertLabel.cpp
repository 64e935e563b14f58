#include "platform/ui/alert/AlertLabel.h"

#include <QPainter>
#include <QTextLayout>
#include <cmath>

#include "platform/ui/drawing/Palette.h"

namespace platform {

namespace {

// Returns the height of the laid-out text.
double layOut(QTextLayout& layout, int width) {
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    double height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height));
        height += std::ceil(line.height());
    }
    layout.endLayout();
    return height;
}

QString withLineSeparators(QString text) {
    return text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

}  // namespace

AlertLabel::AlertLabel(const QString& text, const QFont& font, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setFont(font);
}

int AlertLabel::heightForWidth(int width) const {
    if (text().isEmpty()) return 0;
    QTextLayout layout(withLineSeparators(text()), font());
    return static_cast<int>(layOut(layout, width));
}

void AlertLabel::paintEvent(QPaintEvent*) {
    QTextLayout layout(withLineSeparators(text()), font());
    layOut(layout, width());
    QPainter painter(this);
    painter.setPen(palette::ink);
    layout.draw(&painter, QPointF(0, 0));
}

}  // namespace platform
