#include "views/VxmAppCell.h"

#include <QLabel>

#include "views/Chrome.h"
#include "views/IconView.h"
#include "views/Label.h"
#include "views/Palette.h"

namespace views {

namespace {

constexpr int textX = 55;
constexpr int iconCentreX = 26;
constexpr int titleRise = 12;     // twice the upward shift of the title
constexpr int underTextDrop = 8;  // below the middle of the row

}  // namespace

VxmAppCell::VxmAppCell(const Chrome& chrome, const QString& reuseIdentifier)
    : TableViewCell(reuseIdentifier),
      titleLabel_(makeLabel(contentView(), chrome.rowTitle(), palette::ink)),
      underTextLabel_(makeLabel(contentView(), chrome.rowUnderText(), palette::ink)),
      appImageView_(new IconView(contentView())) {
    setBackgroundImage(QStringLiteral("SettingsDefaultCellBackground.png"));
    setSelectionStyle(SelectionStyle::gray);
    titleLabel_->setGeometry(0, 0, 100, 20);
    underTextLabel_->setGeometry(0, 0, 100, 20);
    resize(320, 50);
}

void VxmAppCell::setTitleLabelText(const QString& text) {
    titleLabel_->setText(text);
    titleSize_ = sizeWithFont(text, titleLabel_->font());
    layoutSubviews();
    updateAccessibleName();
}

void VxmAppCell::setUnderTextLabelText(const std::optional<QString>& text) {
    underTextLabel_->setVisible(text.has_value());
    underTextLabel_->setText(text.value_or(QString()));
    underTextSize_ = sizeWithFont(underTextLabel_->text(), underTextLabel_->font());
    layoutSubviews();
    updateAccessibleName();
}

void VxmAppCell::layoutSubviews() {
    TableViewCell::layoutSubviews();
    const float height = float(contentView()->height());
    placeLabel(*titleLabel_, makeRoundedRect(textX, (height - float(titleSize_.height()) - titleRise) / 2,
                                             float(titleSize_.width()), float(titleSize_.height())));
    placeLabel(*underTextLabel_, makeRoundedRect(textX, (height - float(underTextSize_.height())) / 2 + underTextDrop,
                                                 float(underTextSize_.width()), float(underTextSize_.height())));
    appImageView_->setCentre({iconCentreX, double(height) / 2});
}

void VxmAppCell::updateAccessibleName() {
    setAccessibleName(titleLabel_->text());
    setAccessibleDescription(underTextLabel_->text());
}

}  // namespace views
