#include "screens/rules/SortSelector.h"

#include <QPainter>
#include <QTimer>

#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/drawing/Images.h"
#include "views/Chrome.h"
#include "views/Palette.h"

namespace screens {

namespace {

constexpr QRect nameFrame{1, 0, 106, 31};
constexpr QRect dateFrame{100, 0, 106, 31};
// A button un-highlights itself when the touch on it ends; this much later its highlight is put back.
constexpr auto reHighlightDelay = std::chrono::milliseconds(20);

QString background() {
    return QStringLiteral("CapSelectorBackground");
}

}  // namespace

SortSelector::SortSelector(const views::Chrome& chrome, QWidget* parent) : QWidget(parent) {
    resize(platform::Images::size(background()));
    const auto makeButton = [&](const QRect& frame, const QString& title, int tag) {
        auto* made = new platform::ImageButton(this);
        made->setGeometry(frame);
        made->setText(title);
        made->setAccessibleName(tr("Sort by %1").arg(title));
        made->setCheckable(true);
        made->setAutoExclusive(true);
        made->setFont(chrome.button());
        made->setTitleColor(views::palette::quiet, Qt::white);
        made->setBackgroundImage({}, QStringLiteral("CapSelected"));
        connect(made, &platform::ImageButton::clicked, this, [this, tag] { press(tag); });
        buttonsArray_.at(std::size_t(tag)) = made;
    };
    makeButton(nameFrame, QStringLiteral("Name"), 0);
    makeButton(dateFrame, QStringLiteral("Date"), 1);
    select(0);
}

void SortSelector::press(int tag) {
    if (tag == selected_) return;
    select(tag);
    QTimer::singleShot(reHighlightDelay, this, [this, tag] { select(tag); });
    Q_EMIT capButtonPressed(tag);
}

void SortSelector::select(int tag) {
    selected_ = tag;
    for (int each = 0; each < int(buttonsArray_.size()); ++each) {
        platform::ImageButton* cap = button(each);
        const bool isSelected = each == tag;
        cap->setHighlighted(isSelected);
        cap->setChecked(isSelected);
        cap->setAttribute(Qt::WA_TransparentForMouseEvents, isSelected);
        if (isSelected) cap->raise();
    }
}

void SortSelector::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawPixmap(rect(), platform::Images::named(background(), devicePixelRatioF()));
}

}  // namespace screens
