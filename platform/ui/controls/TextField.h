#pragma once

#include <QLineEdit>
#include <memory>

namespace platform {

class TextField;

// Told when a text field begins and ends to be edited. Not owned; one that is gone is not told any more.
class TextFieldDelegate {
public:
    TextFieldDelegate();
    virtual ~TextFieldDelegate();
    TextFieldDelegate(const TextFieldDelegate&) = delete;
    TextFieldDelegate& operator=(const TextFieldDelegate&) = delete;

    virtual void didBeginEditing(TextField&) {}
    // The field has lost the keyboard for good: by Return, by a tap elsewhere, by being disabled or hidden. Not told
    // when its window goes with it.
    virtual void didEndEditing(TextField&) {}
    // Return was pressed. True lets the field's surroundings handle the key as well.
    virtual bool shouldReturn(TextField&) { return true; }

private:
    friend class TextField;
    std::shared_ptr<const bool> alive_;
};

// A single line of text that can be edited, without a frame of its own. It holds no line breaks: pasted ones become
// spaces, those at the ends are dropped. Leaving the window for another one does not end its editing. Main thread only.
class TextField : public QLineEdit {
    Q_OBJECT
public:
    explicit TextField(QWidget* parent = nullptr);

    void setDelegate(TextFieldDelegate* delegate);

    // Starts and ends editing; each tells the delegate, once.
    void becomeFirstResponder();
    void resignFirstResponder();
    bool isFirstResponder() const { return editing_; }

    // Shrinks the font, down to what can still be read, for the text to fit its width.
    void setAdjustsFontSizeToFitWidth(bool adjusts);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    TextFieldDelegate* liveDelegate() const;
    void beginEditing();
    void endEditing();
    void watchWindow();
    void dropLineBreaks();
    void fitFont();

    TextFieldDelegate* delegate_ = nullptr;
    std::weak_ptr<const bool> delegateAlive_;
    int fullFontSize_ = 0;  // points; 0 while the font has not been shrunk
    bool adjustsFontSize_ = false;
    bool editing_ = false;
    QMetaObject::Connection focusMoves_;  // while editing
};

}  // namespace platform
