#include "screens/settings/VxmLogViewController.h"

#include <system_error>

#include "platform/ui/controls/ImageButton.h"
#include "screens/settings/LogTextView.h"
#include "store/ConfigurationStore.h"
#include "store/files/FileReading.h"
#include "views/Chrome.h"
#include "views/VxmNavBarView.h"

namespace screens {

namespace {

constexpr int fontSize = 12;

LogText noContent() {
    return LogText::of(u"no content");
}

}  // namespace

VxmLogViewController::VxmLogViewController(const views::Chrome& chrome, store::ConfigurationStore& store)
    : VxmScreen(chrome), store_(store) {}

void VxmLogViewController::loadView() {
    auto* bar = new views::VxmNavBarView({0, 0, 320, 40}, *this, true, false, false);
    bar->setTitleString(QStringLiteral("Log"));
    auto* trashButton = bar->addRightButton(QStringLiteral("TrashButton"), tr("Delete the log"));
    connect(trashButton, &platform::ImageButton::clicked, this, &VxmLogViewController::trash);

    theTextView_ = new LogTextView(views::fontWithName(QStringLiteral("Helvetica"), fontSize));
    theTextView_->setAccessibleName(tr("Log"));
    buildView(bar, theTextView_);
}

void VxmLogViewController::viewDidLoad() {
    auto file = store::readFile(store_.logFile());
    theTextView_->setText(file ? LogText(*std::move(file)) : noContent());
    VxmScreen::viewDidLoad();
}

void VxmLogViewController::trash() {
    std::error_code ignored;
    std::filesystem::remove(store_.logFile(), ignored);
    theTextView_->setText(noContent());
}

}  // namespace screens
