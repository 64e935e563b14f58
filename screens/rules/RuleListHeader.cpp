#include "screens/rules/RuleListHeader.h"

#include "platform/ui/search/SearchDisplayController.h"
#include "screens/rules/SortSelector.h"

namespace screens {

namespace {

constexpr int headerHeight = 82;
constexpr int searchBarTop = 1;
constexpr int searchBarHeight = 38;
constexpr int selectorCentreY = 62;

}  // namespace

RuleListHeader::RuleListHeader(const views::Chrome& chrome)
    : searchBar_(new platform::SearchBar(this)), sortSelector_(new SortSelector(chrome, this)) {
    resize(320, headerHeight);
}

void RuleListHeader::resizeEvent(QResizeEvent*) {
    searchBar_->setGeometry(0, searchBarTop, width(), searchBarHeight);
    sortSelector_->move((width() - sortSelector_->width()) / 2, selectorCentreY - sortSelector_->height() / 2);
}

}  // namespace screens
