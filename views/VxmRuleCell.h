#pragma once

#include <optional>

#include "platform/ui/table/TableViewCell.h"

class QLabel;

namespace platform {
class TextField;
}

namespace views {

class Chrome;

// A row of 50 points whose first line is a text field: in edit mode its text can be changed in place, otherwise it
// reads like a label. A second line lies below it; two labels at the right can hold a value. The cell knows nothing of
// rules or files.
class VxmRuleCell : public platform::TableViewCell {
    Q_OBJECT
public:
    VxmRuleCell(const Chrome& chrome, const QString& reuseIdentifier);

    // A text wider than the field is shown in a smaller font, whatever the cell showed before. Whatever its script, it
    // begins at the left, above the second line.
    void setTitleLabelText(const QString& text);
    // Sets the second line; nothing hides it.
    void setUnderTextLabelText(const std::optional<QString>& text);
    void setSmallTextLabelText(const QString& text);
    void setBigTextLabelText(const QString& text);

    void setEditing(bool editing, bool animated) override;

    platform::TextField* titleTextField() const { return titleTextField_; }
    QLabel* underTextLabel() const { return underTextLabel_; }
    QLabel* smallTextLabel() const { return smallTextLabel_; }
    QLabel* bigTextLabel() const { return bigTextLabel_; }

protected:
    void layoutSubviews() override;

private:
    void updateAccessibleName();

    platform::TextField* titleTextField_;
    QRect titleFrame_;  // at the design's width
    QLabel* underTextLabel_;
    QLabel* smallTextLabel_;
    QLabel* bigTextLabel_;
};

}  // namespace views
