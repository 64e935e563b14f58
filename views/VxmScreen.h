#pragma once

#include "platform/ui/navigation/ViewController.h"

namespace platform {
class ImageButton;
}

namespace views {

class Chrome;
class VxmNavBarView;

// The base of every screen: a root view with the screen's own navigation bar across the top and the content panel
// below. A screen builds its bar and its content in loadView() and hands them to buildView(). Main thread only.
class VxmScreen : public platform::ViewController {
    Q_OBJECT
public:
    // `chrome` outlives the screen.
    explicit VxmScreen(const Chrome& chrome) : chrome_(chrome) {}

    const Chrome& chrome() const { return chrome_; }

    // What the buttons of the bar ask the screen that owns it. A screen implements those of the buttons it shows.
    virtual void add(platform::ImageButton&) {}
    virtual void setEditMode(platform::ImageButton&) {}
    virtual void presentSettings(platform::ImageButton&) {}
    virtual void done(platform::ImageButton&) {}

protected:
    // Makes the screen's view of a bar and a content, both taken over. The bar has its title: the screen is announced
    // by it.
    void buildView(VxmNavBarView* bar, QWidget* content);

private:
    const Chrome& chrome_;
};

}  // namespace views
