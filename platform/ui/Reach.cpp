#include "platform/ui/Reach.h"

#include <QWidget>

#include "platform/ui/AlertView.h"
#include "platform/ui/InputShield.h"

namespace platform {

bool isWithinReach(const QWidget* widget) {
    return widget->isVisible() && InputShield::shownIn(widget, InputShield::Until::motionEnds).isEmpty() &&
           !AlertView::isCovered(widget);
}

}  // namespace platform
