#pragma once

#include "views/VxmScreen.h"

namespace store {
class ConfigurationStore;
}

namespace screens {

class LogTextView;

// Shows the firewall engine's log as it was when the screen was opened, and deletes it. A log that is missing or cannot
// be read shows "no content"; an empty one shows nothing.
class VxmLogViewController : public views::VxmScreen {
    Q_OBJECT
public:
    // Both outlive the screen.
    VxmLogViewController(const views::Chrome& chrome, store::ConfigurationStore& store);

    LogTextView* theTextView() const { return theTextView_; }

    // Deletes the log; there is no question before.
    void trash();

protected:
    void loadView() override;
    void viewDidLoad() override;

private:
    store::ConfigurationStore& store_;
    LogTextView* theTextView_ = nullptr;
};

}  // namespace screens
