#include "monkey/Fingers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <utility>

#include "monkey/Journal.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/table/TableViewCell.h"

namespace monkey {

namespace {

const QString someTexts[] = {QStringLiteral("a.example"),
                             QStringLiteral("*b.example:80"),
                             QStringLiteral("App"),
                             QStringLiteral("h"),
                             QStringLiteral("ÄPFEL"),
                             QStringLiteral("עברית.example"),
                             QStringLiteral("one\ntwo\u2028three"),
                             QStringLiteral("\U0001F43B"),
                             QStringLiteral("<b>&amp;</b>"),
                             QString(),
                             QString(QChar(0xD800)),
                             QString(QChar(1)),
                             QString(2000, u'w')};

constexpr std::array someKeys{Qt::Key_Tab,      Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Enter,     Qt::Key_Space,
                              Qt::Key_Escape,   Qt::Key_Delete,  Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Up,
                              Qt::Key_Down,     Qt::Key_Down,    Qt::Key_Left,   Qt::Key_Right,     Qt::Key_PageUp,
                              Qt::Key_PageDown, Qt::Key_Home,    Qt::Key_End,    Qt::Key_Back,      Qt::Key_F1};
constexpr std::array someModifiers{Qt::NoModifier,      Qt::NoModifier,  Qt::NoModifier,   Qt::NoModifier,
                                   Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier};
constexpr std::array editingKeys{Qt::Key_A, Qt::Key_C, Qt::Key_V, Qt::Key_X, Qt::Key_Z, Qt::Key_Y};

std::string at(QPoint point) {
    return std::to_string(point.x()) + "," + std::to_string(point.y());
}

std::string nameOf(const QWidget& widget) {
    return std::string(widget.metaObject()->className()) + " \"" + widget.accessibleName().left(30).toStdString() +
           "\"";
}

}  // namespace

Fingers::Fingers(Random& random, std::function<void(int)> pass) : random_(random), pass_(std::move(pass)) {
    elsewhere_.resize(50, 50);
    elsewhere_.show();
}

void Fingers::use(QWidget* window) {
    window_ = window;
    isDown_ = false;
}

void Fingers::act() {
    struct Way {
        int weight;
        void (Fingers::*act)();
    };
    static constexpr std::array ways{
        Way{36, &Fingers::tapControl}, Way{8, &Fingers::tapAnywhere}, Way{3, &Fingers::tapTwice},
        Way{6, &Fingers::drag},        Way{8, &Fingers::swipe},       Way{3, &Fingers::hold},
        Way{2, &Fingers::turnWheel},   Way{1, &Fingers::openMenu},    Way{12, &Fingers::pressKey},
        Way{6, &Fingers::type},        Way{1, &Fingers::paste},       Way{1, &Fingers::compose},
        Way{2, &Fingers::resize},      Way{1, &Fingers::goElsewhere}};
    if (isDown_ && random_.chance(50)) return release(anyPoint());
    if (!platform::AlertView::shownIn(window_).isEmpty() && random_.chance(40)) return answerAlert();
    int sum = 0;
    for (const Way& way : ways) sum += way.weight;
    int drawn = random_.below(sum);
    const Way* way = ways.data();
    while (drawn >= way->weight) drawn -= (way++)->weight;
    (this->*way->act)();
}

void Fingers::letGo() {
    if (isDown_) release(anyPoint());
    while (QWidget* menu = QApplication::activePopupWidget()) menu->close();
    window_->activateWindow();
    pass_(0);
}

void Fingers::tapAnywhere() {
    tap(anyPoint());
}

void Fingers::tapControl() {
    QWidget* control = anyControl();
    if (!control) return tapAnywhere();
    Journal::note(nameOf(*control));
    tap(middleOf(*control));
}

void Fingers::tapTwice() {
    QWidget* control = anyControl();
    const QPoint point = within(control ? middleOf(*control) : anyPoint());
    Journal::note("tap twice " + at(point));
    QTest::mouseDClick(window_->windowHandle(), Qt::LeftButton, {}, point);
}

void Fingers::answerAlert() {
    const platform::AlertView* alert = platform::AlertView::shownIn(window_).last();
    Journal::note("answer \"" + alert->title().toStdString() + "\"");
    const QPoint button = middleOf(*alert->button(random_.below(alert->numberOfButtons())));
    if (alert->findChild<QLineEdit*>() && random_.chance(80)) type();
    tap(button);
}

void Fingers::drag() {
    const QPoint from = anyPoint();
    const QPoint to = random_.chance(50) ? QPoint(from.x(), anyPoint().y()) : anyPoint();
    drag(from, to, random_.between(2, 8));
}

// Over a row to the left, and mostly onto what comes to be seen.
void Fingers::swipe() {
    const auto cells = window_->findChildren<platform::TableViewCell*>();
    if (cells.isEmpty()) return drag();
    const QPoint from = middleOf(*random_.oneOf(cells)) + QPoint(60, 0);
    drag(from, from - QPoint(random_.between(20, 160), random_.below(5)), random_.between(2, 6));
    if (random_.chance(30)) return;
    pass_(random_.below(300));
    tap({window_->width() - 25, from.y()});
}

// A finger that stays while other things happen.
void Fingers::hold() {
    isDown_ ? release(anyPoint()) : press(anyPoint());
}

void Fingers::turnWheel() {
    const QPoint point = anyPoint();
    const QPoint turn(0, random_.between(-3, 3) * 120);
    QWidget* child = window_->childAt(point);
    QWidget* below = child ? child : window_.data();
    Journal::note("wheel " + at(turn));
    QWheelEvent event(below->mapFrom(window_, QPointF(point)), window_->mapToGlobal(QPointF(point)), {}, turn, {}, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(below, &event);
}

void Fingers::openMenu() {
    const auto fields = window_->findChildren<QLineEdit*>();
    const QPoint point = within(fields.isEmpty() || random_.chance(30) ? anyPoint() : middleOf(*random_.oneOf(fields)));
    Journal::note("menu " + at(point));
    QTest::mouseClick(window_->windowHandle(), Qt::RightButton, {}, point);
}

void Fingers::pressKey() {
    const Qt::KeyboardModifier modifier = random_.oneOf(someModifiers);
    const Qt::Key key = modifier == Qt::ControlModifier ? random_.oneOf(editingKeys) : random_.oneOf(someKeys);
    const int times = random_.chance(80) ? 1 : random_.between(2, 12);
    Journal::note("key " + QKeySequence(key | modifier).toString().toStdString() + " times " + std::to_string(times));
    for (int i = 0; i < times; ++i) QTest::keyClick(window_->windowHandle(), key, modifier);
}

void Fingers::type() {
    const QString text = random_.oneOf(someTexts).left(20);
    Journal::note("type \"" + text.toStdString() + "\"");
    for (const QChar character : text) {
        const bool isTyped = character.unicode() >= ' ' && character.unicode() <= '~';
        if (isTyped) QTest::keyClick(window_->windowHandle(), char(character.unicode()));
    }
}

void Fingers::paste() {
    const QString& text = random_.oneOf(someTexts);
    Journal::note("paste \"" + text.left(20).toStdString() + "\"");
    QApplication::clipboard()->setText(text);
    QTest::keyClick(window_->windowHandle(), Qt::Key_V, Qt::ControlModifier);
}

void Fingers::compose() {
    const QString& text = random_.oneOf(someTexts);
    Journal::note("compose \"" + text.left(20).toStdString() + "\"");
    QInputMethodEvent event(random_.chance(30) ? text : QString(), {});
    event.setCommitString(text);
    if (QWidget* field = QApplication::focusWidget()) QApplication::sendEvent(field, &event);
}

void Fingers::resize() {
    const QSize usual[] = {{320, 548}, {320, 460}, {548, 320}, {120, 90}, {800, 900}};
    const QSize size =
        random_.chance(60) ? random_.oneOf(usual) : QSize(random_.between(1, 600), random_.between(1, 800));
    Journal::note("resize " + at({size.width(), size.height()}));
    window_->resize(size);
}

void Fingers::goElsewhere() {
    const bool isHere = QApplication::activeWindow() == window_;
    Journal::note(isHere ? "another window" : "back to the window");
    (isHere ? &elsewhere_ : window_.data())->activateWindow();
}

void Fingers::tap(QPoint point) {
    press(point);
    if (random_.chance(30)) pass_(random_.below(60));
    release(point);
}

void Fingers::drag(QPoint from, QPoint to, int steps) {
    press(from);
    for (int step = 1; step <= steps; ++step) {
        QTest::mouseMove(window_->windowHandle(), within(from + (to - from) * step / steps));
        pass_(random_.below(20));
    }
    release(to);
}

QWidget* Fingers::anyControl() {
    QList<QWidget*> controls;
    for (auto* widget : window_->findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QLineEdit*>(widget) ||
                               qobject_cast<platform::TableViewCell*>(widget);
        if (isControl && widget->isVisible() && isSeen(*widget)) controls.append(widget);
    }
    return controls.isEmpty() ? nullptr : random_.oneOf(controls);
}

// What a tap on its middle reaches.
bool Fingers::isSeen(const QWidget& control) const {
    const QWidget* reached = window_->childAt(middleOf(control));
    return reached && (reached == &control || control.isAncestorOf(reached));
}

QPoint Fingers::middleOf(const QWidget& control) const {
    return control.mapTo(window_, control.rect().center());
}

QPoint Fingers::anyPoint() {
    return {random_.below(std::max(1, window_->width())), random_.below(std::max(1, window_->height()))};
}

// A finger does not leave the window, which may have become smaller under it.
QPoint Fingers::within(QPoint point) const {
    return {std::clamp(point.x(), 0, std::max(0, window_->width() - 1)),
            std::clamp(point.y(), 0, std::max(0, window_->height() - 1))};
}

void Fingers::press(QPoint point) {
    if (std::exchange(isDown_, true)) return;
    Journal::note("press " + at(within(point)));
    QTest::mousePress(window_->windowHandle(), Qt::LeftButton, {}, within(point));
}

void Fingers::release(QPoint point) {
    if (!std::exchange(isDown_, false)) return;
    Journal::note("release " + at(within(point)));
    QTest::mouseRelease(window_->windowHandle(), Qt::LeftButton, {}, within(point));
}

}  // namespace monkey
