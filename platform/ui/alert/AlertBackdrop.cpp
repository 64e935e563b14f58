#include "platform/ui/alert/AlertBackdrop.h"

#include <QEvent>
#include <QGraphicsEffect>
#include <QPainter>

#include "platform/ui/input/HeldPress.h"
#include "platform/ui/input/OnScreenKeyboard.h"
#include "platform/ui/motion/AnimationClock.h"

namespace platform {

namespace {

constexpr double seconds = 0.2;
constexpr double smallest = 0.9;  // the panel's scale at the start
constexpr double deepestShade = 0.4;

}  // namespace

// Draws the panel scaled and translucent.
class AlertBackdrop::PopEffect : public QGraphicsEffect {
public:
    explicit PopEffect(QObject* parent) : QGraphicsEffect(parent) {}

    void set(double opacity, double scale) {
        opacity_ = opacity;
        scale_ = scale;
        update();
    }

protected:
    void draw(QPainter* painter) override {
        QPoint offset;
        const QPixmap panel = sourcePixmap(Qt::LogicalCoordinates, &offset, NoPad);
        const QPointF centre = sourceBoundingRect().center();
        painter->save();
        painter->setOpacity(opacity_);
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->translate(centre);
        painter->scale(scale_, scale_);
        painter->translate(-centre);
        painter->drawPixmap(offset, panel);
        painter->restore();
    }

private:
    double opacity_ = 0;
    double scale_ = 1;
};

AlertBackdrop::AlertBackdrop(QWidget* window, QWidget* panel) : InputShield(Until::answered, window), panel_(panel) {
    HeldPress::cancel(*window);
    setGeometry(window->rect());
    panel->setParent(this);
    window->installEventFilter(this);
    OnScreenKeyboard::whenMoved(this, [this] { Q_EMIT freeHeightChanged(); });
}

AlertBackdrop::~AlertBackdrop() = default;

int AlertBackdrop::freeHeight() const {
    return height() - OnScreenKeyboard::coveredHeight(this);
}

void AlertBackdrop::comeIn() {
    panel_->show();
    show();
    raise();
    fade(0, 1, true, [] {});
}

void AlertBackdrop::goOut(std::function<void()> gone) {
    fade(shade_, 0, false, std::move(gone));
}

void AlertBackdrop::fade(double from, double to, bool grows, std::function<void()> done) {
    auto* effect = new PopEffect(panel_);
    panel_->setGraphicsEffect(effect);
    const auto step = [this, effect, from, to, grows](double progress) {
        shade_ = from + (to - from) * progress;
        effect->set(shade_, grows ? smallest + (1 - smallest) * progress : 1);
        update();
    };
    step(0);
    motion_ = std::make_unique<QObject>();
    AnimationClock::animate(motion_.get(), seconds, step, [this, done = std::move(done)] {
        panel_->setGraphicsEffect(nullptr);
        done();
    });
}

bool AlertBackdrop::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
        Q_EMIT freeHeightChanged();
    }
    return InputShield::eventFilter(watched, event);
}

void AlertBackdrop::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(deepestShade * shade_)));
}

}  // namespace platform
