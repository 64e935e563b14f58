#pragma once

#include <QWidget>
#include <array>

namespace platform {
class ImageButton;
}

namespace views {
class Chrome;
}

namespace screens {

// The two buttons "Name" (0) and "Date" (1), of which one is selected: highlighted and deaf to touches. Tab reaches the
// selected one, the arrow keys select the other. 207 by 31 points.
class SortSelector : public QWidget {
    Q_OBJECT
public:
    SortSelector(const views::Chrome& chrome, QWidget* parent);

    platform::ImageButton* button(int tag) const { return buttonsArray_.at(std::size_t(tag)); }

Q_SIGNALS:
    // The person pressed the button that was not selected.
    void capButtonPressed(int tag);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void select(int tag);
    void press(int tag);

    std::array<platform::ImageButton*, 2> buttonsArray_{};
    int selected_ = 0;
};

}  // namespace screens
