#include "views/VxmNavBarView.h"

#include <QLabel>

#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/navigation/NavigationController.h"
#include "views/Chrome.h"
#include "views/Label.h"
#include "views/Palette.h"
#include "views/VxmScreen.h"

namespace views {

namespace {

constexpr int designWidth = 320;
constexpr QRect leftButtonFrame{0, -3, 52, 46};
constexpr QRect rightButtonFrame{276, 4, 32, 32};
constexpr QRect acceptButtonFrame{276, 3, 32, 32};

// On a wider screen, buttons in the right half of the design keep their distance from the right edge.
QRect frameInWidth(const QRect& frame, int width) {
    return frame.x() > designWidth / 2 ? frame.translated(width - designWidth, 0) : frame;
}

}  // namespace

VxmNavBarView::VxmNavBarView(const QRect& frame, VxmScreen& screen) : managingViewController_(screen) {
    setGeometry(frame);
    setAutoFillBackground(true);
    QPalette colours = QWidget::palette();
    colours.setColor(QPalette::Window, palette::bar);
    setPalette(colours);
    makeTitleLabel();
}

VxmNavBarView::VxmNavBarView(const QRect& frame, VxmScreen& screen, bool showsBackButton, bool showsAddButton,
                             bool showsEditButton)
    : VxmNavBarView(frame, screen) {
    using platform::ImageButton;
    backButton_ = makeButton(leftButtonFrame, QStringLiteral("BackButton"), tr("Back"));
    connect(backButton_, &ImageButton::clicked, this, &VxmNavBarView::goBackHome);
    ImageButton* addButton = makeButton(rightButtonFrame, QStringLiteral("AddButton"), tr("Add"));
    connect(addButton, &ImageButton::clicked, this, [this, addButton] { managingViewController_.add(*addButton); });
    editButton_ = makeButton(rightButtonFrame, QStringLiteral("EditButton"), tr("Edit"));
    connect(editButton_, &ImageButton::clicked, this, [this] { managingViewController_.setEditMode(*editButton_); });
    addButton->setVisible(showsAddButton);
    backButton_->setVisible(showsBackButton);
    editButton_->setVisible(showsEditButton);
    titleLabel_->raise();
}

platform::ImageButton* VxmNavBarView::makeButton(const QRect& frame, const QString& image,
                                                 const QString& accessibleName) {
    auto* button = new platform::ImageButton(this);
    addControl(button, frame);
    button->setImage(image);
    button->setAccessibleName(accessibleName);
    return button;
}

platform::ImageButton* VxmNavBarView::addRightButton(const QString& image, const QString& accessibleName) {
    return makeButton(rightButtonFrame, image, accessibleName);
}

void VxmNavBarView::addControl(QWidget* control, const QRect& frame) {
    control->setParent(this);
    control->setGeometry(frameInWidth(frame, width()));
    controls_.push_back({control, frame});
}

void VxmNavBarView::showSettingsButton() {
    backButton_ = makeButton(leftButtonFrame, QStringLiteral("SettingsButton"), tr("Settings"));
    connect(backButton_, &platform::ImageButton::clicked, this,
            [this, button = backButton_] { managingViewController_.presentSettings(*button); });
}

void VxmNavBarView::makeTitleLabel() {
    titleLabel_ = makeLabel(this, managingViewController_.chrome().barTitle(), palette::quiet);
    titleLabel_->setGeometry(0, 0, designWidth, 20);
}

void VxmNavBarView::setTitleString(const QString& title) {
    titleLabel_->setText(title);
    layoutSubviews();
}

void VxmNavBarView::layoutSubviews() {
    const QSizeF text = sizeWithFont(titleLabel_->text(), titleLabel_->font());
    placeLabel(*titleLabel_, makeRoundedRect(float((width() - text.width()) / 2), float((height() - text.height()) / 2),
                                             float(text.width()), float(text.height())));
    for (const PlacedControl& placed : controls_) placed.control->setGeometry(frameInWidth(placed.frame, width()));
}

void VxmNavBarView::resizeEvent(QResizeEvent*) {
    layoutSubviews();
}

void VxmNavBarView::changeEditButtonVisibility(bool visible) {
    editButton_->setVisible(visible);
}

void VxmNavBarView::goBackHome() {
    if (isModal_) {
        managingViewController_.dismissViewController(true);
    } else if (auto* navigation = managingViewController_.navigationController()) {
        navigation->popViewController(true);
    }
}

VxmAppChooserNavBarView::VxmAppChooserNavBarView(const QRect& frame, VxmScreen& screen) : VxmNavBarView(frame, screen) {
    auto* accept = makeButton(acceptButtonFrame, QStringLiteral("AcceptButton"), tr("Done"));
    connect(accept, &platform::ImageButton::clicked, this, [this, accept] { managingViewController().done(*accept); });
    titleLabel()->raise();
}

}  // namespace views
