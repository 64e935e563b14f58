#include "platform/ui/Accessibility.h"

#include <QAccessibleWidget>

#include "platform/ui/AlertView.h"
#include "platform/ui/ImageButton.h"
#include "platform/ui/Switch.h"
#include "platform/ui/TableView.h"
#include "platform/ui/TableViewCell.h"

namespace platform {

namespace {

class AccessibleButton : public QAccessibleWidget {
public:
    AccessibleButton(QAbstractButton* button, QAccessible::Role role) : QAccessibleWidget(button, role) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button()->isCheckable();
        state.checked = button()->isChecked();
        state.pressed = button()->isDown();
        return state;
    }

    QStringList actionNames() const override { return QStringList(action()) + QAccessibleWidget::actionNames(); }

    void doAction(const QString& name) override {
        if (name == action()) {
            if (button()->isEnabled()) button()->click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    QAbstractButton* button() const { return static_cast<QAbstractButton*>(widget()); }
    QString action() const { return button()->isCheckable() ? toggleAction() : pressAction(); }
};

QAccessibleInterface* interfaceOf(const QString&, QObject* object) {
    if (auto* alert = qobject_cast<AlertView*>(object)) {
        return new QAccessibleWidget(alert, QAccessible::AlertMessage, alert->title());
    }
    if (auto* button = qobject_cast<ImageButton*>(object)) return new AccessibleButton(button, QAccessible::Button);
    if (auto* toggle = qobject_cast<Switch*>(object)) return new AccessibleButton(toggle, QAccessible::CheckBox);
    if (auto* table = qobject_cast<TableView*>(object)) return new QAccessibleWidget(table, QAccessible::List);
    if (auto* cell = qobject_cast<TableViewCell*>(object)) return new QAccessibleWidget(cell, QAccessible::ListItem);
    return nullptr;
}

}  // namespace

void installAccessibility() {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(interfaceOf);
        return true;
    }();
}

}  // namespace platform
