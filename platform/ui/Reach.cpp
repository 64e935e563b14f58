#include "platform/ui/Reach.h"

#include <QWidget>

#include "platform/ui/AlertView.h"
#include "platform/ui/ScreenTransition.h"

namespace platform {

bool isWithinReach(const QWidget* widget) {
    return widget->isVisible() && !ScreenTransition::runningIn(widget->window()) && !AlertView::isCovered(widget);
}

}  // namespace platform
