#pragma once

#include <vector>

class QWidget;

namespace platform {

// Implemented by a widget that defines the Tab order of its own parts, as TableView does: its child widgets are
// recycled, so their order says nothing. Focus asks it instead of walking its children. Main thread only.
class FocusScope {
public:
    FocusScope() = default;
    virtual ~FocusScope() = default;
    FocusScope(const FocusScope&) = delete;
    FocusScope& operator=(const FocusScope&) = delete;

    // The part that precedes the widget itself in the Tab order, or nullptr, and the parts that follow it.
    virtual QWidget* partBefore() const = 0;
    virtual std::vector<QWidget*> partsAfter() const = 0;

    // Scrolls `part`, or the part that contains it, into view. Called before it gets the focus.
    virtual void bringIntoSight(const QWidget* part) = 0;
    // Stops drawing the focus frame. Called when input changes from keyboard to mouse or touch.
    virtual void hideFocus() = 0;
};

}  // namespace platform
