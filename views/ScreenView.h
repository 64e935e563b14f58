#pragma once

#include <QWidget>

namespace views {

// The root view of a screen: the bar (40 points), below it the panel with the content under a thin soft shadow. It
// fills whatever it is given: bar and panel are as wide, and the panel grows and shrinks with the height.
class ScreenView : public QWidget {
public:
    // Takes over both. `bodyHeight` is the panel's height in points at the design height of 320 by `designHeight`.
    ScreenView(QWidget* bar, QWidget* content, int bodyHeight, int designHeight);

    QWidget* panel() const { return panel_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* bar_;
    QWidget* panel_;
    QWidget* content_;
    QWidget* shadow_;
    int spareHeight_;  // points below the panel at the design height
};

}  // namespace views
