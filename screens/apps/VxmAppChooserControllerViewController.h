#pragma once

#include "screens/apps/AppListScreen.h"

namespace screens {

class VxmMainViewController;

// Every installed app that is not under the firewall yet. A tap hands the app to the main screen and closes the
// chooser. The list is built once, when the screen loads.
class VxmAppChooserControllerViewController : public AppListScreen {
    Q_OBJECT
public:
    using AppListScreen::AppListScreen;

    // Receives the chosen app; not owned. Outlives the chooser, which it presents.
    void setMainViewController(VxmMainViewController* mainViewController) { mainViewController_ = mainViewController; }

    // Closes without choosing.
    void done(platform::ImageButton& sender) override;

    bool canEditRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    void didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;

protected:
    void loadView() override;
    void viewDidLoad() override;

private:
    VxmMainViewController* mainViewController_ = nullptr;
};

}  // namespace screens
