#pragma once

#include <QAccessibleWidget>

namespace platform {

// Whether a part of a row can be done something to; the rest of it is read as the row's name.
bool holdsControl(const QWidget* partOfRow);

// What a widget that only holds others is to a screen reader: its visible children in reading order, without those that
// are mere decoration or, in a row, that the row is called by. One with a name (a screen, an alert) is read as a place
// of its own. While an alert lies over a window, the alert is all there is in it.
class AccessibleView : public QAccessibleWidget {
public:
    explicit AccessibleView(QWidget* widget) : QAccessibleWidget(widget) {}

    QAccessible::Role role() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;

private:
    QList<QWidget*> children() const;
};

}  // namespace platform
