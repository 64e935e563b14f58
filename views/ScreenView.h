#pragma once

#include <QWidget>

namespace views {

// The root view of a screen: the bar (40 points), below it the panel with the content, with a thin shadow between them.
// Bar and panel take the full width; the panel's height follows that of the view.
class ScreenView : public QWidget {
public:
    // Takes ownership of both. `bodyHeight` is the panel's height at the view height `designHeight`, in points.
    ScreenView(QWidget* bar, QWidget* content, int bodyHeight, int designHeight);

    QWidget* panel() const { return panel_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* bar_;
    QWidget* panel_;
    QWidget* content_;
    QWidget* shadow_;
    int spareHeight_;  // below the panel at the design height, in points
};

}  // namespace views
