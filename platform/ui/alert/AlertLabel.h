#pragma once

#include <QLabel>

namespace platform {

// Centred plain text, wrapped at word boundaries, or anywhere within a word wider than the label (a file name).
class AlertLabel : public QLabel {
public:
    AlertLabel(const QString& text, const QFont& font, QWidget* parent);

    // In points. Trailing line breaks count: callers use them to reserve space.
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace platform
