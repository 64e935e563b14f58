#include "platform/ui/input/ReadingOrder.h"

#include <QWidget>
#include <algorithm>

namespace platform {

namespace {

int middle(const QWidget* widget) {
    return widget->y() + widget->height() / 2;
}

}  // namespace

QList<QWidget*> inReadingOrder(const QWidget* parent) {
    QList<QWidget*> widgets;
    for (QWidget* child : parent->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (!child->isWindow() && child->isVisibleTo(parent)) widgets.append(child);
    }
    std::stable_sort(widgets.begin(), widgets.end(),
                     [](const QWidget* a, const QWidget* b) { return middle(a) < middle(b); });
    for (auto line = widgets.begin(); line != widgets.end();) {
        const int bottom = (*line)->y() + (*line)->height();
        const auto next =
            std::find_if(line + 1, widgets.end(), [bottom](const QWidget* below) { return middle(below) >= bottom; });
        std::stable_sort(line, next, [](const QWidget* a, const QWidget* b) { return a->x() < b->x(); });
        line = next;
    }
    return widgets;
}

}  // namespace platform
