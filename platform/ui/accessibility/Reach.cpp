#include "platform/ui/accessibility/Reach.h"

#include <QWidget>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/input/InputShield.h"

namespace platform {

bool isWithinReach(const QWidget* widget) {
    return widget->isVisible() && InputShield::shownIn(widget, InputShield::Until::motionEnds).isEmpty() &&
           !AlertView::isCovered(widget);
}

}  // namespace platform
