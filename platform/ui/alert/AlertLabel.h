#pragma once

#include <QLabel>

namespace platform {

// Centred plain text that wraps between words, and within a word that is wider than the label (a file name).
class AlertLabel : public QLabel {
public:
    AlertLabel(const QString& text, const QFont& font, QWidget* parent);

    // Points that the text takes at this width; line breaks count even where no text follows them.
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace platform
