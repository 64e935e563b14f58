#pragma once

#include <QWidget>

class QLabel;

namespace platform {
class ImageButton;
}

namespace views {
class Chrome;
}

namespace screens {

// What stands above the list of export files: an explanation with the "Export" button on it, 132 points high, and the
// list below.
class ExportPanel : public QWidget {
    Q_OBJECT
public:
    // Takes over the list.
    ExportPanel(const views::Chrome& chrome, QWidget* list);

    QLabel* explanation() const { return explanation_; }
    platform::ImageButton* exportButton() const { return exportButton_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QLabel* explanation_;
    platform::ImageButton* exportButton_;
    QWidget* list_;
};

}  // namespace screens
