#include "platform/ui/accessibility/Accessibility.h"

#include <QAccessibleWidget>

#include "platform/ui/accessibility/AccessibleRow.h"
#include "platform/ui/accessibility/AccessibleTable.h"
#include "platform/ui/accessibility/AccessibleTextField.h"
#include "platform/ui/accessibility/AccessibleView.h"
#include "platform/ui/accessibility/Reach.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/controls/Switch.h"
#include "platform/ui/controls/TextField.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"

namespace platform {

namespace {

class AccessibleAlert : public AccessibleView {
public:
    explicit AccessibleAlert(AlertView* alert) : AccessibleView(alert) {}

    QAccessible::Role role() const override { return QAccessible::AlertMessage; }
    QAccessible::State state() const override {
        QAccessible::State state = AccessibleView::state();
        state.modal = true;
        return state;
    }
};

class AccessibleButton : public QAccessibleWidget {
public:
    explicit AccessibleButton(QAbstractButton* button) : QAccessibleWidget(button) {}

    // Exclusive checkable buttons are radio buttons.
    QAccessible::Role role() const override {
        if (!button()->isCheckable()) return QAccessible::Button;
        return button()->autoExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox;
    }

    QString text(QAccessible::Text which) const override {
        const QString given = QAccessibleWidget::text(which);
        return which == QAccessible::Name && given.isEmpty() ? button()->text() : given;
    }

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
            if (button()->isEnabled() && isWithinReach(button())) button()->click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    QAbstractButton* button() const { return static_cast<QAbstractButton*>(widget()); }
    QString action() const { return button()->isCheckable() ? toggleAction() : pressAction(); }
};

// Qt calls this for each class of the object, the most derived first; "QWidget" therefore means a plain container.
QAccessibleInterface* interfaceOf(const QString& className, QObject* object) {
    if (auto* alert = qobject_cast<AlertView*>(object)) return new AccessibleAlert(alert);
    if (auto* button = qobject_cast<ImageButton*>(object)) return new AccessibleButton(button);
    if (auto* toggle = qobject_cast<Switch*>(object)) return new AccessibleButton(toggle);
    if (auto* table = qobject_cast<TableView*>(object)) return new AccessibleTable(table);
    if (auto* cell = qobject_cast<TableViewCell*>(object)) return new AccessibleCell(cell);
    if (auto* field = qobject_cast<TextField*>(object)) return new AccessibleTextField(field);
    if (className == QLatin1String("QWidget")) return new AccessibleView(static_cast<QWidget*>(object));
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
