#include "platform/ui/navigation/ScreenTransition.h"

#include <QApplication>
#include <QPainter>
#include <utility>

#include "platform/ui/input/HeldPress.h"
#include "platform/ui/motion/AnimationClock.h"

namespace platform {

namespace {

constexpr double seconds = 0.35;
constexpr int deepestShade = 36;  // alpha over a fully covered screen

// Positions of the upper and the lower screen when the upper one covers the fraction `covered` of the stage.
QPoint upperPlace(bool sideways, const QSize& stage, double covered) {
    return sideways ? QPoint(qRound(stage.width() * (1 - covered)), 0)
                    : QPoint(0, qRound(stage.height() * (1 - covered)));
}

QPoint lowerPlace(bool sideways, const QSize& stage, double covered) {
    return sideways ? QPoint(qRound(-stage.width() * covered / 3), 0) : QPoint();
}

}  // namespace

ScreenTransition::ScreenTransition(QWidget* stage, QWidget* leaving, QWidget* coming, Way way)
    : InputShield(Until::motionEnds, stage), leaving_(leaving), coming_(coming), way_(way) {
    HeldPress::cancel(*leaving);
    place(0);
    show();
    coming->show();
    (comingIsOnTop() ? coming : leaving)->raise();
    raise();
    qApp->installEventFilter(this);
}

void ScreenTransition::run(bool animated, std::function<void()> finished) {
    finished_ = std::move(finished);
    const auto step = [this](double progress) {
        if (finished_) place(progress);
    };
    AnimationClock::animate(this, animated ? seconds : 0, step, [this] { finish(); });
}

void ScreenTransition::finish() {
    if (!finished_) return;
    place(1);
    if (leaving_) leaving_->hide();
    hide();
    qApp->removeEventFilter(this);
    deleteLater();
    std::exchange(finished_, nullptr)();
}

void ScreenTransition::follow() {
    place(progress_);
}

void ScreenTransition::place(double progress) {
    progress_ = progress;
    if (!leaving_ || !coming_) return;
    const QSize stage = parentWidget()->size();
    const bool sideways = way_ == Way::push || way_ == Way::pop;
    const double covered = comingIsOnTop() ? progress : 1 - progress;
    QWidget* upper = comingIsOnTop() ? coming_ : leaving_;
    QWidget* lower = comingIsOnTop() ? leaving_ : coming_;
    upper->setGeometry(QRect(upperPlace(sideways, stage, covered), stage));
    lower->setGeometry(QRect(lowerPlace(sideways, stage, covered), stage));
    setGeometry(QRect(QPoint(), stage));
    update();
}

// A shield does not receive key events: the focus is inside a screen. They are filtered on their way to it.
bool ScreenTransition::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::InputMethod:
            return watched->isWidgetType() && parentWidget()->isAncestorOf(static_cast<QWidget*>(watched));
        default:
            return false;
    }
}

void ScreenTransition::paintEvent(QPaintEvent*) {
    if (!leaving_ || !coming_) return;
    const double covered = comingIsOnTop() ? progress_ : 1 - progress_;
    const QWidget* upper = comingIsOnTop() ? coming_ : leaving_;
    QPainter painter(this);
    painter.setClipRegion(QRegion(rect()) - upper->geometry());
    painter.fillRect(rect(), QColor(0, 0, 0, qRound(deepestShade * covered)));
}

}  // namespace platform
