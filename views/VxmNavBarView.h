#pragma once

#include <QWidget>
#include <vector>

class QLabel;

namespace platform {
class ImageButton;
class ViewController;
}  // namespace platform

namespace views {

class VxmScreen;

// A screen's own navigation bar: a light strip of 40 points with a centred title and up to three image buttons. It does
// nothing by itself apart from going back; every other button asks the screen that owns the bar. Points throughout.
class VxmNavBarView : public QWidget {
    Q_OBJECT
public:
    // `screen` owns the bar through its view and outlives it.
    VxmNavBarView(const QRect& frame, VxmScreen& screen, bool showsBackButton, bool showsAddButton,
                  bool showsEditButton);

    // Sets the title and centres it. One that is wider than the bar is cut at both of its sides.
    void setTitleString(const QString& title);

    // Puts a settings button in the back button's place.
    void showSettingsButton();

    // Puts one more button of the screen's own at the right, in the place of add and edit.
    platform::ImageButton* addRightButton(const QString& image, const QString& accessibleName);

    // Takes over a control of the screen's own. In the right half of the bar it keeps its distance from the right edge.
    void addControl(QWidget* control, const QRect& frame);

    void changeEditButtonVisibility(bool visible);

    // The action of the back button: pops the screen, or dismisses it where the bar is modal.
    void goBackHome();

    void setModal(bool modal) { isModal_ = modal; }
    bool isModal() const { return isModal_; }

    QLabel* titleLabel() const { return titleLabel_; }
    platform::ImageButton* backButton() const { return backButton_; }
    platform::ImageButton* editButton() const { return editButton_; }

protected:
    // A bar with a title only, for bars with buttons of their own.
    VxmNavBarView(const QRect& frame, VxmScreen& screen);

    platform::ImageButton* makeButton(const QRect& frame, const QString& image, const QString& accessibleName);
    VxmScreen& managingViewController() const { return managingViewController_; }
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeTitleLabel();
    void layoutSubviews();

    // A control and its frame at the design's width.
    struct PlacedControl {
        QWidget* control;
        QRect frame;
    };

    VxmScreen& managingViewController_;
    std::vector<PlacedControl> controls_;
    QLabel* titleLabel_ = nullptr;
    platform::ImageButton* backButton_ = nullptr;
    platform::ImageButton* editButton_ = nullptr;
    bool isModal_ = false;
};

// The bar of the add-app chooser: a title and an accept button.
class VxmAppChooserNavBarView : public VxmNavBarView {
    Q_OBJECT
public:
    VxmAppChooserNavBarView(const QRect& frame, VxmScreen& screen);
};

}  // namespace views
