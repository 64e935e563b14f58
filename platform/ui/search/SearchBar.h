#pragma once

#include <QWidget>
#include <memory>

class QAbstractButton;
class QLineEdit;

namespace platform {

class GlidingValue;

// A search field with magnifying glass, clear button and, during a search, "Cancel". 38 points high.
class SearchBar : public QWidget {
    Q_OBJECT
public:
    explicit SearchBar(QWidget* parent = nullptr);
    ~SearchBar() override;

    QString text() const;
    void setText(const QString& text);
    int selectedScopeButtonIndex() const { return 0; }
    QLineEdit* field() const { return field_; }

    // Shows or hides "Cancel".
    void setShowsCancelButton(bool shows, bool animated = false);

Q_SIGNALS:
    void textChanged(const QString& text);
    void didBeginEditing();
    void cancelClicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect outline() const;
    void place();

    QLineEdit* field_;
    QAbstractButton* clearButton_;
    QAbstractButton* cancelButton_;
    std::unique_ptr<GlidingValue> cancelShown_;  // 0 hidden, 1 shown
};

}  // namespace platform
