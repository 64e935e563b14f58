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

// A screen's navigation bar: 40 points high, with a centred title and up to three image buttons. The back button goes
// back; every other button calls the screen that owns the bar. All coordinates are in points.
class VxmNavBarView : public QWidget {
    Q_OBJECT
public:
    // `screen` owns the bar through its view and outlives it.
    VxmNavBarView(const QRect& frame, VxmScreen& screen, bool showsBackButton, bool showsAddButton,
                  bool showsEditButton);

    // Sets and centres the title. A title wider than the bar is clipped at both sides.
    void setTitleString(const QString& title);

    // Replaces the back button by a settings button.
    void showSettingsButton();

    // Adds a button of the screen at the right, in the position of add and edit.
    platform::ImageButton* addRightButton(const QString& image, const QString& accessibleName);

    // Adds a control of the screen and takes ownership. In the right half it keeps its distance from the right edge.
    void addControl(QWidget* control, const QRect& frame);

    void changeEditButtonVisibility(bool visible);

    // The action of the back button: pops the screen, or dismisses it if the bar is modal.
    void goBackHome();

    void setModal(bool modal) { isModal_ = modal; }
    bool isModal() const { return isModal_; }

    QLabel* titleLabel() const { return titleLabel_; }
    platform::ImageButton* backButton() const { return backButton_; }
    platform::ImageButton* editButton() const { return editButton_; }

protected:
    // A bar with a title only, for subclasses with other buttons.
    VxmNavBarView(const QRect& frame, VxmScreen& screen);

    platform::ImageButton* makeButton(const QRect& frame, const QString& image, const QString& accessibleName);
    VxmScreen& managingViewController() const { return managingViewController_; }
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeTitleLabel();
    void layoutSubviews();

    // A control and its frame at the design width of 320 points.
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
