#pragma once

#include <QAccessibleWidget>

namespace platform {

class TextField;

// A text field. Text that assistive technology sets while the field is not being edited is committed at once.
class AccessibleTextField : public QAccessibleWidget,
                            public QAccessibleTextInterface,
                            public QAccessibleEditableTextInterface {
public:
    explicit AccessibleTextField(TextField* field);

    QString text(QAccessible::Text which) const override;
    void setText(QAccessible::Text which, const QString& text) override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;

    void selection(int index, int* begin, int* end) const override;
    int selectionCount() const override;
    void addSelection(int begin, int end) override { setSelection(0, begin, end); }
    void removeSelection(int index) override;
    void setSelection(int index, int begin, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int begin, int end) const override;
    int characterCount() const override;
    QRect characterRect(int) const override { return rect(); }
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int begin, int) override { setCursorPosition(begin); }
    QString attributes(int offset, int* begin, int* end) const override;

    void deleteText(int begin, int end) override { replaceText(begin, end, QString()); }
    void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
    void replaceText(int begin, int end, const QString& text) override;

private:
    TextField* field() const;
    bool canBeEdited() const;
};

}  // namespace platform
