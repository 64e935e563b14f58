#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <memory>

class QPushButton;

namespace platform {

class AlertView;

// Receives the answer to an alert. One delegate may serve several alerts and distinguishes them by identity or tag. Not
// owned; when it has been destroyed, the alert closes without a call.
class AlertViewDelegate {
public:
    AlertViewDelegate();
    virtual ~AlertViewDelegate();
    AlertViewDelegate(const AlertViewDelegate&) = delete;
    AlertViewDelegate& operator=(const AlertViewDelegate&) = delete;

    // The alert is still visible and its fields hold their text.
    virtual void willDismissWithButtonIndex(AlertView& alert, int buttonIndex);
    // The alert is hidden and will be deleted after the call.
    virtual void didDismissWithButtonIndex(AlertView& alert, int buttonIndex);

private:
    friend class AlertView;
    std::shared_ptr<const bool> alive_;
};

// A modal question inside the window, over the dimmed screen: title, message and buttons. The cancel button has index
// 0, the others follow in order. Two buttons form a row, more a stack. Alerts stack; the newest is on top and has the
// focus. Keyboard: Tab and the arrow keys move through the buttons in index order, Return or Space presses the focused
// one, Return in a text field presses the last button, Escape presses button 0. Main thread only.
class AlertView : public QWidget {
    Q_OBJECT
public:
    // Create with new: from show() on the alert owns itself and is deleted once it has closed.
    AlertView(const QString& title, const QString& message, AlertViewDelegate* delegate,
              const QString& cancelButtonTitle, const QStringList& otherButtonTitles = {});
    ~AlertView() override;

    const QString& title() const { return title_; }
    const QString& message() const { return message_; }

    int tag = 0;

    // Adds a widget at a frame in the alert's coordinates (284 points wide). Owned by the alert.
    void addSubview(QWidget* view, const QRect& frame);

    // Marks a button whose effect cannot be undone: its title is red. The accent is on the last button that is not
    // destructive, and on none when only the cancel button is left. Before or after show().
    void setDestructive(int buttonIndex);
    bool isDestructive(int buttonIndex) const;

    // Shows the alert over the whole window of `inWindowOf`, once that widget is visible and no screen transition runs.
    // The focus goes to the first text field, else to button 0; on closing it returns to its previous widget.
    void show(QWidget* inWindowOf);
    using QWidget::show;

    // Closes as if the button had been pressed: willDismiss, animation, didDismiss.
    void dismissWithClickedButtonIndex(int buttonIndex);

    int numberOfButtons() const;
    QPushButton* button(int index) const;

    // The alerts shown in the widget's window, oldest first.
    static QList<AlertView*> shownIn(const QWidget* widget);
    // Whether an alert covers the widget and blocks its input.
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
