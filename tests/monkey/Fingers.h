#pragma once

#include <QtTest>
#include <QtWidgets>
#include <algorithm>
#include <functional>

#include "monkey/Journal.h"
#include "monkey/Random.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/table/TableViewCell.h"

namespace monkey {

using namespace Qt::StringLiterals;

// What a person does to the window, with real events. The journal says of everything what it is.
class Fingers {
public:
    // `pass` lets milliseconds pass.
    Fingers(Random& random, std::function<void(int)> pass) : random_(random), pass_(std::move(pass)) {
        elsewhere_.resize(50, 50);
        elsewhere_.show();
    }

    // The window that they are on from now on.
    void use(QWidget* window) { window_ = window; }

    // Any one thing.
    void act() {
        static constexpr Weighted<void (*)(Fingers&)> ways[] = {
            {36, [](Fingers& hand) { hand.tap(hand.anyControl()); }},
            {8, [](Fingers& hand) { hand.tap(hand.anyPoint()); }},
            {3, [](Fingers& hand) { hand.mouse(QTest::MouseDClick, hand.anyControl()); }},
            {6, [](Fingers& hand) { hand.drag(); }},
            {8, [](Fingers& hand) { hand.swipe(); }},
            // A finger that stays while other things happen.
            {3, [](Fingers& hand) { hand.isDown_ ? hand.release(hand.anyPoint()) : hand.press(hand.anyPoint()); }},
            {2, [](Fingers& hand) { hand.turnWheel(); }},
            {1, [](Fingers& hand) { hand.mouse(QTest::MouseClick, hand.anyField(), Qt::RightButton); }},
            {12, [](Fingers& hand) { hand.pressKeys(); }},
            {6, [](Fingers& hand) { hand.type(); }},
            {1, [](Fingers& hand) { hand.paste(); }},
            {1, [](Fingers& hand) { hand.compose(); }},
            {2, [](Fingers& hand) { hand.resize(); }},
            {1, [](Fingers& hand) { hand.goElsewhere(); }}};
        if (isDown_ && random_.chance(50)) return release(anyPoint());
        if (!platform::AlertView::shownIn(window_).isEmpty() && random_.chance(40)) return answerAlert();
        random_.weighted(ways)(*this);
    }

    // Lets go of what is held, leaves menus, comes back from other windows.
    void letGo() {
        if (isDown_) release(anyPoint());
        while (QWidget* menu = QApplication::activePopupWidget()) menu->close();
        window_->activateWindow();
        pass_(0);
    }

private:
    void answerAlert() {
        const platform::AlertView* alert = platform::AlertView::shownIn(window_).last();
        const QPoint button = middleOf(*alert->button(random_.below(alert->numberOfButtons())));
        if (alert->findChild<QLineEdit*>() && random_.chance(80)) type();
        tap(button);
    }

    void drag() {
        const QPoint from = anyPoint();
        const QPoint to = random_.chance(50) ? QPoint(from.x(), anyPoint().y()) : anyPoint();
        drag(from, to, random_.between(2, 8));
    }

    // Over a row to the left, and mostly onto what comes to be seen.
    void swipe() {
        const auto cells = window_->findChildren<platform::TableViewCell*>();
        if (cells.isEmpty()) return drag();
        const QPoint from = middleOf(*random_.oneOf(cells)) + QPoint(60, 0);
        drag(from, from - QPoint(random_.between(20, 160), random_.below(5)), random_.between(2, 6));
        if (random_.chance(30)) return;
        pass_(random_.below(300));
        tap({window_->width() - 25, from.y()});
    }

    void turnWheel() {
        const QPoint point = anyPoint();
        const QPoint turn(0, random_.between(-3, 3) * 120);
        QWidget* child = window_->childAt(point);
        QWidget* below = child ? child : window_.data();
        Journal::note("wheel " + std::to_string(turn.y()));
        QWheelEvent event(below->mapFrom(window_, QPointF(point)), window_->mapToGlobal(QPointF(point)), {}, turn, {},
                          {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(below, &event);
    }

    void pressKeys() {
        using enum Qt::Key;
        using enum Qt::KeyboardModifier;
        static constexpr Qt::Key keys[] = {Key_Tab,      Key_Backtab, Key_Return, Key_Enter,     Key_Space,
                                           Key_Escape,   Key_Delete,  Key_Delete, Key_Backspace, Key_Up,
                                           Key_Down,     Key_Down,    Key_Left,   Key_Right,     Key_PageUp,
                                           Key_PageDown, Key_Home,    Key_End,    Key_Back,      Key_F1};
        const Qt::KeyboardModifier modifier = random_.oneOf(
            {NoModifier, NoModifier, NoModifier, NoModifier, ControlModifier, AltModifier, ShiftModifier});
        const Qt::Key key = modifier == ControlModifier ? random_.oneOf({Key_A, Key_C, Key_V, Key_X, Key_Z, Key_Y})
                                                        : random_.oneOf(keys);
        const int times = random_.chance(80) ? 1 : random_.between(2, 12);
        Journal::note("key " + QKeySequence(key | modifier).toString().toStdString() + " times " +
                      std::to_string(times));
        for (int i = 0; i < times; ++i) QTest::keyClick(glass(), key, modifier);
    }

    void type() {
        for (const QChar character : anyText("type").left(20))
            if (character.unicode() >= ' ' && character.unicode() <= '~')
                QTest::keyClick(glass(), char(character.unicode()));
    }

    void paste() {
        QApplication::clipboard()->setText(anyText("paste"));
        QTest::keyClick(glass(), Qt::Key_V, Qt::ControlModifier);
    }

    void compose() {
        const QString text = anyText("compose");
        QInputMethodEvent event(random_.chance(30) ? text : QString(), {});
        event.setCommitString(text);
        if (QWidget* field = QApplication::focusWidget()) QApplication::sendEvent(field, &event);
    }

    void resize() {
        static constexpr QSize usual[] = {{320, 548}, {320, 460}, {548, 320}, {120, 90}, {800, 900}};
        const QSize size =
            random_.chance(60) ? random_.oneOf(usual) : QSize(random_.between(1, 600), random_.between(1, 800));
        Journal::note("resize to " + std::to_string(size.width()) + "x" + std::to_string(size.height()));
        window_->resize(size);
    }

    void goElsewhere() {
        const bool isHere = QApplication::activeWindow() == window_;
        Journal::note(isHere ? "another window" : "back to the window");
        (isHere ? &elsewhere_ : window_.data())->activateWindow();
    }

    void tap(QPoint point) {
        press(point);
        if (random_.chance(30)) pass_(random_.below(60));
        release(point);
    }

    void drag(QPoint from, QPoint to, int steps) {
        press(from);
        for (int step = 1; step <= steps; ++step) {
            QTest::mouseMove(glass(), within(from + (to - from) * step / steps));
            pass_(random_.below(20));
        }
        release(to);
    }

    void press(QPoint point) {
        if (!std::exchange(isDown_, true)) mouse(QTest::MousePress, point);
    }
    void release(QPoint point) {
        if (std::exchange(isDown_, false)) mouse(QTest::MouseRelease, point);
    }

    void mouse(QTest::MouseAction action, QPoint point, Qt::MouseButton button = Qt::LeftButton) {
        static const std::string names[] = {"press ", "release ", "click ", "tap twice "};
        point = within(point);
        const QWidget* child = window_->childAt(point);
        const std::string target = child ? child->metaObject()->className() : "the window";
        Journal::note(names[action] + std::to_string(point.x()) + "," + std::to_string(point.y()) + " on " + target);
        QTest::mouseEvent(action, glass(), button, {}, point);
    }

    QString anyText(const std::string& what) {
        static const QString texts[] = {
            u"a.example"_s,           u"*b.example:80"_s, u"App"_s,          u"h"_s, u"ÄPFEL"_s,  u"עברית.example"_s,
            u"one\ntwo\u2028three"_s, u"\U0001F43B"_s,    u"<b>&amp;</b>"_s, u""_s,  u"\xD800"_s, u"\x01"_s,
            QString(2000, u'w')};
        const QString& text = random_.oneOf(texts);
        Journal::note(what + " \"" + text.left(20).toStdString() + "\"");
        return text;
    }

    // The middle of one that a tap there reaches.
    QPoint anyControl() {
        QList<QPoint> points;
        for (auto* widget : window_->findChildren<QWidget*>()) {
            const bool isControl = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QLineEdit*>(widget) ||
                                   qobject_cast<platform::TableViewCell*>(widget);
            if (!isControl || !widget->isVisible()) continue;
            const QWidget* reached = window_->childAt(middleOf(*widget));
            if (reached && (reached == widget || widget->isAncestorOf(reached))) points.append(middleOf(*widget));
        }
        return points.isEmpty() ? anyPoint() : random_.oneOf(points);
    }
    QPoint anyField() {
        const auto fields = window_->findChildren<QLineEdit*>();
        return fields.isEmpty() || random_.chance(30) ? anyPoint() : middleOf(*random_.oneOf(fields));
    }

    QWindow* glass() const { return window_->windowHandle(); }
    QPoint middleOf(const QWidget& control) const { return control.mapTo(window_, control.rect().center()); }
    QPoint anyPoint() {
        return {random_.below(std::max(1, window_->width())), random_.below(std::max(1, window_->height()))};
    }
    // A finger does not leave the window, which may have become smaller under it.
    QPoint within(QPoint point) const {
        return {std::clamp(point.x(), 0, std::max(0, window_->width() - 1)),
                std::clamp(point.y(), 0, std::max(0, window_->height() - 1))};
    }

    Random& random_;
    std::function<void(int)> pass_;
    QPointer<QWidget> window_;
    QWidget elsewhere_;
    bool isDown_ = false;
};

}  // namespace monkey
