#include "views/VxmFileCell.h"

#include <QLabel>

#include "views/Chrome.h"
#include "views/Label.h"
#include "views/Palette.h"

namespace views {

namespace {

constexpr int textX = 12;

}  // namespace

VxmFileCell::VxmFileCell(const Chrome& chrome, const QString& reuseIdentifier)
    : TableViewCell(reuseIdentifier), titleLabel_(makeLabel(contentView(), chrome.rowTitle(), palette::ink)) {
    setBackgroundImage(QStringLiteral("SettingsDefaultCellBackground.png"));
    setSelectionStyle(SelectionStyle::gray);
    titleLabel_->setGeometry(16, 7, 296, 20);
    resize(320, 50);
}

void VxmFileCell::setTitleLabelText(const QString& text) {
    const QSizeF size = sizeWithFont(text, titleLabel_->font());
    titleLabel_->setText(text);
    placeLabel(*titleLabel_, makeRoundedRect(textX, float(contentView()->height() - size.height()) / 2,
                                             float(size.width()), float(size.height())));
    setAccessibleName(text);
}

}  // namespace views
