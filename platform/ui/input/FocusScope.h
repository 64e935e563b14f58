#pragma once

#include <vector>

class QWidget;

namespace platform {

// A widget that says itself which of its parts the keyboard reaches, and in which order: a table, whose child widgets
// stand in no order and may lie out of sight. Focus asks it instead of its children. Main thread only.
class FocusScope {
public:
    FocusScope() = default;
    virtual ~FocusScope() = default;
    FocusScope(const FocusScope&) = delete;
    FocusScope& operator=(const FocusScope&) = delete;

    // What Tab reaches before the widget itself, or nullptr, and what it reaches after it.
    virtual QWidget* partBefore() const = 0;
    virtual std::vector<QWidget*> partsAfter() const = 0;

    // The focus is about to go to `part` or to a widget inside it: scrolls there.
    virtual void bringIntoSight(const QWidget* part) = 0;
    // The person has turned from the keys to finger or mouse: nothing marks any more where the focus is.
    virtual void hideFocus() = 0;
};

}  // namespace platform
