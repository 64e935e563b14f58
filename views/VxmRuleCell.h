#pragma once

#include <optional>

#include "platform/ui/table/TableViewCell.h"

class QLabel;

namespace platform {
class TextField;
}

namespace views {

class Chrome;

// A row of 50 points whose first line is a text field, editable in edit mode and a label otherwise. A second line is
// below it; two labels at the right can show a value. Independent of rules and files.
class VxmRuleCell : public platform::TableViewCell {
    Q_OBJECT
public:
    VxmRuleCell(const Chrome& chrome, const QString& reuseIdentifier);

    // A text wider than the field is shown in a smaller font, independent of the cell's previous text. Text of every
    // script starts at the left, above the second line.
    void setTitleLabelText(const QString& text);
    // Sets the second line; std::nullopt hides it.
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
    QRect titleFrame_;  // at the design width of 320 points
    QLabel* underTextLabel_;
    QLabel* smallTextLabel_;
    QLabel* bigTextLabel_;
};

}  // namespace views
