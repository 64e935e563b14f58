#include "views/VxmRuleCell.h"

#include <QLabel>

#include "platform/ui/controls/TextField.h"
#include "views/Chrome.h"
#include "views/Label.h"
#include "views/Palette.h"

namespace views {

namespace {

constexpr int designWidth = 320;
constexpr QRect newTitleFrame{16, 7, 296, 20};
constexpr QRect titleFrame{16, 9, 296, 20};
constexpr QRect editingTitleFrame{16, 9, 256, 20};  // leaves room for the delete control
constexpr QRect provisionalFrame{0, 0, 100, 20};
constexpr int underTextX = 18;
constexpr int underTextDrop = 12;
constexpr int smallTextRight = 284;

platform::TextField* makeTitleTextField(QWidget* parent, const QFont& font) {
    auto* field = new platform::TextField(parent);
    field->setFont(font);
    field->setAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
    QPalette colours = field->palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        colours.setColor(group, QPalette::Text, palette::ink);
        colours.setColor(group, QPalette::Base, Qt::transparent);
    }
    field->setPalette(colours);
    field->setAdjustsFontSizeToFitWidth(true);
    field->setEnabled(false);
    return field;
}

}  // namespace

VxmRuleCell::VxmRuleCell(const Chrome& chrome, const QString& reuseIdentifier)
    : TableViewCell(reuseIdentifier),
      titleTextField_(makeTitleTextField(contentView(), chrome.rowTitle())),
      titleFrame_(newTitleFrame),
      underTextLabel_(makeLabel(contentView(), chrome.rowUnderText(), palette::ink)),
      smallTextLabel_(makeLabel(contentView(), chrome.smallText(), palette::faintInk)),
      bigTextLabel_(makeLabel(contentView(), chrome.bigText(), palette::ink)) {
    setBackgroundImage(QStringLiteral("SettingsDefaultCellBackground.png"));
    setSelectionStyle(SelectionStyle::none);
    for (QLabel* label : {underTextLabel_, smallTextLabel_, bigTextLabel_}) label->setGeometry(provisionalFrame);
    VxmRuleCell::layoutSubviews();
}

void VxmRuleCell::setTitleLabelText(const QString& text) {
    titleTextField_->setText(text);
    titleTextField_->setCursorPosition(0);
    updateAccessibleName();
}

void VxmRuleCell::setUnderTextLabelText(const std::optional<QString>& text) {
    underTextLabel_->setVisible(text.has_value());
    const QString line = text.value_or(QString());
    const QSizeF size = sizeWithFont(line, underTextLabel_->font());
    const float y = float(contentView()->height() - size.height()) / 2 + underTextDrop;
    underTextLabel_->setGeometry(makeRoundedRect(underTextX, y, float(size.width()), float(size.height())));
    underTextLabel_->setText(line);
    updateAccessibleName();
}

void VxmRuleCell::setSmallTextLabelText(const QString& text) {
    const QSizeF size = sizeWithFont(text, smallTextLabel_->font());
    smallTextLabel_->setGeometry(makeRoundedRect(float(smallTextRight - size.width()),
                                                 float(contentView()->height() - size.height()) / 2,
                                                 float(size.width()), float(size.height())));
    smallTextLabel_->setText(text);
}

void VxmRuleCell::setBigTextLabelText(const QString& text) {
    const QSizeF size = sizeWithFont(text, bigTextLabel_->font());
    bigTextLabel_->setGeometry(makeRoundedRect(float(smallTextLabel_->x() - size.width()),
                                               float(contentView()->height() - size.height()) / 2, float(size.width()),
                                               float(size.height())));
    bigTextLabel_->setText(text);
}

void VxmRuleCell::setEditing(bool editing, bool animated) {
    TableViewCell::setEditing(editing, animated);
    titleTextField_->setEnabled(editing);
    titleFrame_ = editing ? editingTitleFrame : titleFrame;
    layoutSubviews();
}

void VxmRuleCell::layoutSubviews() {
    TableViewCell::layoutSubviews();
    titleTextField_->setGeometry(titleFrame_.adjusted(0, 0, width() - designWidth, 0));
}

void VxmRuleCell::updateAccessibleName() {
    setAccessibleName(titleTextField_->text());
    setAccessibleDescription(underTextLabel_->text());
    titleTextField_->setAccessibleName(titleTextField_->text());
}

}  // namespace views
