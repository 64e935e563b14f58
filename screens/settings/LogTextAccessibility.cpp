#include "screens/settings/LogTextAccessibility.h"

#include <QAccessibleWidget>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <limits>

#include "screens/settings/LogTextView.h"

namespace screens {

namespace {

constexpr auto most = std::size_t(std::numeric_limits<int>::max());

// Whatever the length of the log, reading a part costs that part and the row around it.
class AccessibleLogText : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit AccessibleLogText(LogTextView* view) : QAccessibleWidget(view, QAccessible::EditableText) {}

    int childCount() const override { return 0; }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }

    QString text(QAccessible::Text which) const override {
        return which == QAccessible::Value ? view()->visibleText() : QAccessibleWidget::text(which);
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    int selectionCount() const override { return view()->anchor() == view()->caret() ? 0 : 1; }
    void selection(int, int* begin, int* end) const override {
        *begin = int(std::min(view()->anchor(), view()->caret()));
        *end = int(std::max(view()->anchor(), view()->caret()));
    }
    void addSelection(int begin, int end) override { setSelection(0, begin, end); }
    void removeSelection(int) override { view()->select(view()->caret(), view()->caret()); }
    void setSelection(int, int begin, int end) override { view()->select(position(begin), position(end)); }
    int cursorPosition() const override { return int(view()->caret()); }
    void setCursorPosition(int offset) override {
        view()->select(position(offset), position(offset));
        view()->bringIntoSight(position(offset));
    }

    int characterCount() const override { return int(std::min(view()->text().size(), most)); }
    QString text(int begin, int end) const override {
        return view()->text().slice(std::min(position(begin), position(end)), position(end));
    }
    QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* begin, int* end) const override {
        return slice(unitAround(position(offset), boundary), begin, end);
    }
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int* begin, int* end) const override {
        const std::size_t here = unitAround(position(offset), boundary).first;
        return slice(here == 0 ? Part() : unitAround(here - 1, boundary), begin, end);
    }
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int* begin, int* end) const override {
        const std::size_t next = unitAround(position(offset), boundary).second;
        return slice(next == view()->text().size() ? Part(next, next) : unitAround(next, boundary), begin, end);
    }
    QRect characterRect(int) const override { return rect(); }
    int offsetAtPoint(const QPoint& point) const override {
        return int(view()->positionAt(view()->viewport()->mapFromGlobal(point)));
    }
    void scrollToSubstring(int begin, int) override { view()->bringIntoSight(position(begin)); }
    QString attributes(int, int* begin, int* end) const override {
        *begin = 0;
        *end = characterCount();
        return {};
    }

private:
    using Part = std::pair<std::size_t, std::size_t>;

    LogTextView* view() const { return static_cast<LogTextView*>(widget()); }

    // A negative offset means the end.
    std::size_t position(int offset) const {
        return offset < 0 ? view()->text().size() : std::min(std::size_t(offset), view()->text().size());
    }

    QString slice(Part part, int* begin, int* end) const {
        *begin = int(part.first);
        *end = int(part.second);
        return view()->text().slice(part.first, part.second);
    }

    // A character or a word of a row; everything longer is the row.
    Part unitAround(std::size_t at, QAccessible::TextBoundaryType boundary) const {
        const Part row = view()->rowAround(at);
        const bool isWord = boundary == QAccessible::WordBoundary;
        const bool isPart = isWord || boundary == QAccessible::CharBoundary;
        if (!isPart || at == row.second) return row;
        const QString text = view()->text().slice(row.first, row.second);
        QTextBoundaryFinder finder(isWord ? QTextBoundaryFinder::Word : QTextBoundaryFinder::Grapheme, text);
        finder.setPosition(qsizetype(at - row.first));
        const qsizetype begin = finder.isAtBoundary() ? finder.position() : finder.toPreviousBoundary();
        const qsizetype end = finder.toNextBoundary();
        return {row.first + std::size_t(begin), end < 0 ? row.second : row.first + std::size_t(end)};
    }
};

QAccessibleInterface* interfaceOf(const QString&, QObject* object) {
    auto* view = qobject_cast<LogTextView*>(object);
    return view ? new AccessibleLogText(view) : nullptr;
}

}  // namespace

void installLogTextAccessibility() {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(interfaceOf);
        return true;
    }();
}

}  // namespace screens
