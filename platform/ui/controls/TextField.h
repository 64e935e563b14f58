#pragma once

#include <QLineEdit>
#include <memory>

namespace platform {

class TextField;

// Receives the start and the end of editing. Not owned; may be destroyed before the field.
class TextFieldDelegate {
public:
    TextFieldDelegate();
    virtual ~TextFieldDelegate();
    TextFieldDelegate(const TextFieldDelegate&) = delete;
    TextFieldDelegate& operator=(const TextFieldDelegate&) = delete;

    virtual void didBeginEditing(TextField&) {}
    // Editing has ended: by Return, by a tap elsewhere, by the field being disabled or hidden. Not called when the
    // whole window is hidden or only loses activation.
    virtual void didEndEditing(TextField&) {}
    // Return was pressed. True passes the key on to the field's parents.
    virtual bool shouldReturn(TextField&) { return true; }

private:
    friend class TextField;
    std::shared_ptr<const bool> alive_;
};

// A single-line text field without a frame. Line breaks in pasted text become spaces; leading and trailing ones are
// removed. Window deactivation does not end editing. Main thread only.
class TextField : public QLineEdit {
    Q_OBJECT
public:
    explicit TextField(QWidget* parent = nullptr);

    void setDelegate(TextFieldDelegate* delegate);

    // Start and end editing. Each informs the delegate once.
    void becomeFirstResponder();
    void resignFirstResponder();
    bool isFirstResponder() const { return editing_; }

    // Shrinks the font until the text fits the width, to 7 points at least.
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
