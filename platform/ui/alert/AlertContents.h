#pragma once

#include <QRect>
#include <QStringList>
#include <vector>

class QLineEdit;
class QPainter;
class QWidget;

namespace platform {

class AlertButton;
class AlertText;

// The contents of an alert's panel and their layout: title, message, views of the caller, buttons. The widgets are
// children of the panel.
class AlertContents {
public:
    AlertContents(QWidget* panel, const QString& title, const QString& message, const QStringList& buttonTitles);

    void addSubview(QWidget* view, const QRect& frame);
    void setDestructive(int buttonIndex);

    const std::vector<AlertButton*>& buttons() const { return buttons_; }
    const std::vector<QLineEdit*>& fields() const { return fields_; }
    // The fields, then the buttons by index.
    std::vector<QWidget*> focusOrder() const;

    // Sets the geometry of all widgets and the height of the panel. Text that does not fit into a window of this height
    // scrolls.
    void layOut(int windowHeight);
    AlertText& text() const { return *text_; }

    void paint(QPainter& painter) const;

private:
    void makeButtons(const QStringList& titles);
    void giveAccent();
    int layOutButtons(int top);
    int buttonRows() const;

    QWidget* panel_;
    AlertText* text_;
    std::vector<AlertButton*> buttons_;
    std::vector<QWidget*> subviews_;
    std::vector<QLineEdit*> fields_;
};

}  // namespace platform
