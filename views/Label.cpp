#include "views/Label.h"

#include <QColor>
#include <QFont>

namespace views {

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

}  // namespace views
