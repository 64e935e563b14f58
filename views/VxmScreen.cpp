#include "views/VxmScreen.h"

#include "views/Chrome.h"
#include "views/ScreenView.h"

namespace views {

void VxmScreen::buildView(QWidget* bar, QWidget* content) {
    setView(new ScreenView(bar, content, chrome_.bodyHeight(), chrome_.windowSize().height()));
}

}  // namespace views
