#include "platform/ui/InputShield.h"

#include <QEvent>

namespace platform {

bool InputShield::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::TouchBegin:
        case QEvent::ContextMenu:
            event->accept();
            return true;
        default:
            return QWidget::event(event);
    }
}

}  // namespace platform
