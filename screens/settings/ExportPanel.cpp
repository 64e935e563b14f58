#include "screens/settings/ExportPanel.h"

#include <QLabel>

#include "platform/ui/controls/ImageButton.h"
#include "views/Chrome.h"
#include "views/Label.h"
#include "views/Palette.h"

namespace screens {

namespace {

constexpr int explanationHeight = 132;
constexpr int textInset = 8;
constexpr QSize buttonSize{106, 31};
constexpr int buttonCentreY = 112;

}  // namespace

ExportPanel::ExportPanel(const views::Chrome& chrome, QWidget* list)
    : explanation_(views::makeLabel(this, chrome.helpText(), views::palette::ink)),
      exportButton_(new platform::ImageButton(this)),
      list_(list) {
    list_->setParent(this);
    explanation_->setText(QStringLiteral(
        "To export all your settings, just tap on the export-button and a file will be saved in "
        "/var/mobile/Library/Preferences/Vxm/.\nTo import a previously exported file, please place it in that folder, "
        "reload this view and then tap on it."));
    explanation_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    explanation_->setWordWrap(true);
    explanation_->setMargin(textInset);
    explanation_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    exportButton_->setText(QStringLiteral("Export"));
    exportButton_->setFont(chrome.button());
    exportButton_->setTitleColor(Qt::white, Qt::white);
    exportButton_->setBackgroundImage(QStringLiteral("CapSelected"), QStringLiteral("CapSelected"));
}

void ExportPanel::resizeEvent(QResizeEvent*) {
    explanation_->setGeometry(0, 0, width(), explanationHeight);
    QRect button({0, 0}, buttonSize);
    button.moveCenter({width() / 2, buttonCentreY});
    exportButton_->setGeometry(button);
    list_->setGeometry(0, explanationHeight, width(), height() - explanationHeight);
}

}  // namespace screens
