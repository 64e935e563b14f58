#include "platform/ui/input/InputShield.h"

#include <QEvent>

namespace platform {

QList<InputShield*> InputShield::shownIn(const QWidget* widget, Until until) {
    QList<InputShield*> shields = widget->window()->findChildren<InputShield*>();
    shields.removeIf([until](const InputShield* each) { return each->until_ != until || each->isHidden(); });
    return shields;
}

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
