#pragma once

#include <optional>

#include "platform/ui/table/TableViewCell.h"

class QLabel;

namespace views {

class Chrome;
class IconView;

// A row of 50 points with an icon, a name and a line of text under the name.
class VxmAppCell : public platform::TableViewCell {
    Q_OBJECT
public:
    VxmAppCell(const Chrome& chrome, const QString& reuseIdentifier);

    // Sets the name. A name wider than the row is clipped at the right.
    void setTitleLabelText(const QString& text);
    // Sets the line under the name; std::nullopt hides it.
    void setUnderTextLabelText(const std::optional<QString>& text);

    QLabel* titleLabel() const { return titleLabel_; }
    QLabel* underTextLabel() const { return underTextLabel_; }
    IconView* appImageView() const { return appImageView_; }

protected:
    void layoutSubviews() override;

private:
    void updateAccessibleName();

    QLabel* titleLabel_;
    QLabel* underTextLabel_;
    IconView* appImageView_;
    QSizeF titleSize_;  // measured in its font
    QSizeF underTextSize_;
};

}  // namespace views
