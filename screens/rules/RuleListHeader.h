#pragma once

#include <QWidget>

namespace platform {
class SearchBar;
}

namespace views {
class Chrome;
}

namespace screens {

class SortSelector;

// What stands above the rows of a rule list: the search bar and, below it, the sort selector. 82 points high.
class RuleListHeader : public QWidget {
    Q_OBJECT
public:
    explicit RuleListHeader(const views::Chrome& chrome);

    platform::SearchBar* searchBar() const { return searchBar_; }
    SortSelector* sortSelector() const { return sortSelector_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    platform::SearchBar* searchBar_;
    SortSelector* sortSelector_;
};

}  // namespace screens
