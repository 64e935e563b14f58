#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <memory>

class QPushButton;

namespace platform {

class AlertView;

// Told when an alert is about to close and when it has closed. One delegate may serve several alerts: it tells them
// apart by identity or by tag. Not owned; an alert whose delegate is gone closes silently.
class AlertViewDelegate {
public:
    AlertViewDelegate();
    virtual ~AlertViewDelegate();
    AlertViewDelegate(const AlertViewDelegate&) = delete;
    AlertViewDelegate& operator=(const AlertViewDelegate&) = delete;

    // Still on the screen; fields inside still hold their text.
    virtual void willDismissWithButtonIndex(AlertView& alert, int buttonIndex);
    // Gone from the screen; the alert itself is destroyed right after.
    virtual void didDismissWithButtonIndex(AlertView& alert, int buttonIndex);

private:
    friend class AlertView;
    std::shared_ptr<const bool> alive_;
};

// A modal question over the dimmed screen, inside the window: title, message, buttons by index. The cancel button is
// index 0, the others follow in order. Two buttons stand in a row, more are stacked. Alerts stack; the newest is on
// top and has the keyboard: Tab and the arrows walk the buttons in index order, Return or Space presses the focused
// one, Return in a text field presses the last button, Escape presses button 0. Main thread only.
class AlertView : public QWidget {
    Q_OBJECT
public:
    // Make with new: an alert owns itself from show() on and is destroyed once it has closed.
    AlertView(const QString& title, const QString& message, AlertViewDelegate* delegate,
              const QString& cancelButtonTitle, const QStringList& otherButtonTitles = {});
    ~AlertView() override;

    const QString& title() const { return title_; }
    const QString& message() const { return message_; }

    int tag = 0;

    // A widget inside the alert, with its frame in the alert's own coordinates (284 points wide). Owned by the alert.
    void addSubview(QWidget* view, const QRect& frame);

    // The button destroys what nothing brings back, and looks it: its title is in the muted red. The accent is always
    // on the last button that destroys nothing, and on none when only the cancel button is left. Before or after
    // show().
    void setDestructive(int buttonIndex);
    bool isDestructive(int buttonIndex) const;

    // Shows the alert over the whole window that `inWindowOf` lives in, once that is visible and at rest. Focus goes to
    // the first text field that was added, else to button 0; when the alert closes, focus returns to where it was.
    void show(QWidget* inWindowOf);
    using QWidget::show;

    // Closes as if the button had been pressed: willDismiss, animation, didDismiss.
    void dismissWithClickedButtonIndex(int buttonIndex);

    int numberOfButtons() const;
    QPushButton* button(int index) const;

    // The alerts now shown in the window of a widget, oldest first; for tests and for window chrome.
    static QList<AlertView*> shownIn(const QWidget* widget);
    // Whether an alert lies over a widget, so that nothing can be done to it.
    static bool isCovered(const QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    struct Private;
    std::unique_ptr<Private> d_;
    QString title_;
    QString message_;
};

}  // namespace platform
