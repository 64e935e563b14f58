#pragma once

#include "platform/ui/navigation/ViewController.h"

namespace platform {
class ImageButton;
}

namespace views {

class Chrome;
class VxmNavBarView;

// The base class of all screens: a root view with the screen's navigation bar at the top and the content panel below. A
// screen creates both in loadView() and passes them to buildView(). Main thread only.
class VxmScreen : public platform::ViewController {
    Q_OBJECT
public:
    // `chrome` outlives the screen.
    explicit VxmScreen(const Chrome& chrome) : chrome_(chrome) {}

    const Chrome& chrome() const { return chrome_; }

    // Called by the buttons of the bar. A screen implements those of the buttons that it shows.
    virtual void add(platform::ImageButton&) {}
    virtual void setEditMode(platform::ImageButton&) {}
    virtual void presentSettings(platform::ImageButton&) {}
    virtual void done(platform::ImageButton&) {}

protected:
    // Creates the screen's view from bar and content and takes ownership of both. The bar must have its title, which
    // becomes the accessible name of the screen.
    void buildView(VxmNavBarView* bar, QWidget* content);

private:
    const Chrome& chrome_;
};

}  // namespace views
