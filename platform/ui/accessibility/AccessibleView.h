#pragma once

#include <QAccessibleWidget>

namespace platform {

// Whether a part of a row is or contains a control. The other parts are read as the row's name.
bool holdsControl(const QWidget* partOfRow);

// A container: its visible children in reading order, without decoration and, inside a row, without the parts that
// form the row's name. With an accessible name (a screen, an alert) it is a pane of its own. While an alert is shown,
// the window's only child is the alert.
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
