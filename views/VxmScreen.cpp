#include "views/VxmScreen.h"

#include <QLabel>

#include "views/Chrome.h"
#include "views/ScreenView.h"
#include "views/VxmNavBarView.h"

namespace views {

void VxmScreen::buildView(VxmNavBarView* bar, QWidget* content) {
    auto* view = new ScreenView(bar, content, chrome_.bodyHeight(), chrome_.windowSize().height());
    view->setAccessibleName(bar->titleLabel()->text());
    setView(view);
}

}  // namespace views
