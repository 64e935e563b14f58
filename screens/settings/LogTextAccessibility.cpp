#include "screens/settings/LogTextAccessibility.h"

#include <QAccessibleWidget>

#include "screens/settings/LogTextView.h"

namespace screens {

namespace {

class AccessibleLogText : public QAccessibleWidget {
public:
    explicit AccessibleLogText(LogTextView* view) : QAccessibleWidget(view, QAccessible::EditableText) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }

    QString text(QAccessible::Text which) const override {
        if (which == QAccessible::Value) return static_cast<LogTextView*>(widget())->visibleText();
        return QAccessibleWidget::text(which);
    }
};

QAccessibleInterface* interfaceOf(const QString&, QObject* object) {
    auto* view = qobject_cast<LogTextView*>(object);
    return view ? new AccessibleLogText(view) : nullptr;
}

}  // namespace

void installLogTextAccessibility() {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(interfaceOf);
        return true;
    }();
}

}  // namespace screens
