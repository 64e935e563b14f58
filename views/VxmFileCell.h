#pragma once

#include "platform/ui/table/TableViewCell.h"

class QLabel;

namespace views {

class Chrome;

// A row of 50 points with the name of a file.
class VxmFileCell : public platform::TableViewCell {
    Q_OBJECT
public:
    VxmFileCell(const Chrome& chrome, const QString& reuseIdentifier);

    void setTitleLabelText(const QString& text);
    QLabel* titleLabel() const { return titleLabel_; }

private:
    QLabel* titleLabel_;
};

}  // namespace views
