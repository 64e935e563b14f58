// What a table and a search are to a screen reader.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QTest>

#include "platform/ui/accessibility/Accessibility.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/controls/Switch.h"
#include "platform/ui/controls/TextField.h"
#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"
#include "platform_ui/InstantClock.h"

namespace {

using namespace platform;

constexpr int many = 1'000'000;

class Rows : public TableViewDataSource, public TableViewDelegate {
public:
    int numberOfRowsInSection(TableView&, int) override { return count; }
    TableViewCell* cellForRowAtIndexPath(TableView& table, IndexPath path) override {
        ++asked;
        TableViewCell* cell = table.dequeueReusableCell(QStringLiteral("Cell"));
        if (!cell) cell = new TableViewCell(QStringLiteral("Cell"));
        cell->setAccessibleName(QStringLiteral("row %1").arg(path.row));
        cell->setAccessoryView(path.row == 1 ? new Switch : nullptr);
        return cell;
    }
    bool canEditRowAtIndexPath(TableView&, IndexPath path) override { return path.row != 0; }
    void commitEditingStyle(TableView& table, EditingStyle, IndexPath path) override {
        removed.append(path.row);
        --count;
        table.deleteRow(path, RowAnimation::left);
    }
    void didSelectRowAtIndexPath(TableView& table, IndexPath path) override {
        table.deselectRow(path, false);
        chosen.append(path.row);
    }

    int count = many;
    int asked = 0;
    QList<int> removed;
    QList<int> chosen;
};

// A list and a button.
class Screen : public ViewController {
public:
    // Whether a press by assistance is heard, by the button and by a row.
    std::pair<bool, bool> hearPresses() {
        const auto press = [](QAccessibleInterface* element) {
            element->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        };
        clicks = 0;
        rows.chosen.clear();
        press(QAccessible::queryAccessibleInterface(button));
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(table);
        press(list->child(list->childCount() - 1)->child(3));
        return {clicks == 1, rows.chosen == QList{3}};
    }

protected:
    void loadView() override {
        auto* view = new QWidget;
        button = new ImageButton(view);
        connect(button, &ImageButton::clicked, this, [this] { ++clicks; });
        table = new TableView(view);
        table->setGeometry(0, 40, 320, 420);
        table->setDataSource(&rows);
        table->setDelegate(&rows);
        setView(view);
    }

private:
    ImageButton* button = nullptr;
    TableView* table = nullptr;
    Rows rows;
    int clicks = 0;
};

class AccessibilityTest : public testing::Test {
protected:
    void SetUp() override {
        installAccessibility();
        window.resize(320, 460);
        table = new TableView(&window);
        table->resize(window.size());
        table->setDataSource(&rows);
        table->setDelegate(&rows);
        window.show();
        QApplication::setActiveWindow(&window);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    static QAccessibleInterface* read(QObject* object) { return QAccessible::queryAccessibleInterface(object); }
    QAccessibleInterface* list() const { return read(table)->child(read(table)->childCount() - 1); }
    QAccessibleInterface* row(int position) const { return list()->child(position); }
    static bool act(QAccessibleInterface* element, const QString& action) {
        const bool offered = element->actionInterface()->actionNames().contains(action);
        element->actionInterface()->doAction(action);
        return offered;
    }

    const InstantClock instant;
    Rows rows;
    QWidget window;
    TableView* table = nullptr;
};

TEST_F(AccessibilityTest, RowsAreMadeWhenTheyAreAskedFor) {
    const int asked = rows.asked;
    EXPECT_EQ(list()->role(), QAccessible::List);
    EXPECT_EQ(list()->childCount(), many);
    EXPECT_EQ(list()->tableInterface()->rowCount(), many);
    EXPECT_EQ(rows.asked, asked);
    QAccessibleInterface* far = row(many / 2);
    EXPECT_EQ(far->text(QAccessible::Name), QStringLiteral("row %1").arg(many / 2));
    EXPECT_TRUE(far->state().offscreen);
    EXPECT_EQ(list()->indexOfChild(far), many / 2);
    EXPECT_EQ(far->parent(), list());
    EXPECT_LE(rows.asked, asked + 2);
    EXPECT_EQ(table->contentOffset(), 0) << "reading does not scroll";
    EXPECT_TRUE(act(far, QAccessibleActionInterface::setFocusAction()));
    EXPECT_FALSE(far->state().offscreen);
    EXPECT_TRUE(far->state().focused);
    EXPECT_EQ(read(table)->focusChild(), far);
    for (int position = 0; position < 10'000; ++position) ASSERT_TRUE(row(position));
    EXPECT_EQ(row(9'999)->text(QAccessible::Name), u"row 9999");
    EXPECT_EQ(row(0)->text(QAccessible::Name), u"row 0");
    EXPECT_EQ(list()->child(many), nullptr);
}

TEST_F(AccessibilityTest, RowsDoWhatAFingerDoes) {
    QAccessibleInterface* toggled = row(1);
    ASSERT_TRUE(toggled->state().checkable);
    EXPECT_TRUE(act(toggled, QAccessibleActionInterface::toggleAction()));
    EXPECT_TRUE(toggled->state().checked);
    QAccessibleInterface* inside = toggled->child(0)->child(0);
    EXPECT_EQ(inside->role(), QAccessible::CheckBox);
    EXPECT_EQ(inside->parent()->parent(), toggled);
    table->cellForRow({0, 1})->accessorySwitch()->setEnabled(false);
    EXPECT_FALSE(act(toggled, QAccessibleActionInterface::toggleAction()));
    EXPECT_TRUE(toggled->state().checked);

    EXPECT_TRUE(act(row(many - 1), QAccessibleActionInterface::pressAction()));
    EXPECT_EQ(rows.chosen, QList{many - 1});
    EXPECT_FALSE(act(row(0), QStringLiteral("delete")));
    EXPECT_TRUE(act(row(7), QStringLiteral("delete")));
    EXPECT_EQ(rows.removed, QList{7});
    EXPECT_EQ(list()->childCount(), many - 1);
}

TEST_F(AccessibilityTest, AnAlertIsAllThereIs) {
    auto* alert = new AlertView(QStringLiteral("Sure?"), QStringLiteral("Think."), nullptr, QStringLiteral("No"));
    alert->show(table);
    const QAccessibleInterface* frame = read(&window);
    ASSERT_EQ(frame->childCount(), 1);
    EXPECT_EQ(frame->child(0)->child(0), read(alert));
    EXPECT_TRUE(read(alert)->state().modal);
    act(row(3), QAccessibleActionInterface::pressAction());
    act(row(3), QStringLiteral("delete"));
    EXPECT_TRUE(rows.chosen.isEmpty());
    EXPECT_TRUE(rows.removed.isEmpty());
    act(read(alert->button(0)), QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(QTest::qWaitFor([&] { return read(&window)->child(0) == read(table); }));
}

TEST(ScreenAccessibility, OnlyTheScreenThatIsSeenAndAtRestIsPressed) {
    constexpr std::pair all{true, true};
    constexpr std::pair none{false, false};
    installAccessibility();
    auto root = std::make_unique<Screen>();
    auto next = std::make_unique<Screen>();
    Screen* const from = root.get();
    Screen* const to = next.get();
    NavigationController navigation(std::move(root));
    navigation.resize(320, 460);
    navigation.show();
    EXPECT_EQ(from->hearPresses(), all);
    navigation.pushViewController(std::move(next), true);
    EXPECT_EQ(from->hearPresses(), none);
    EXPECT_EQ(to->hearPresses(), none);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !from->view()->isVisible(); }));
    EXPECT_EQ(from->hearPresses(), none);
    EXPECT_EQ(to->hearPresses(), all);
}

TEST_F(AccessibilityTest, ASearchLeavesItsBarAndItsResults) {
    auto* header = new QWidget;
    header->resize(320, 82);
    auto* bar = new SearchBar(header);
    auto* below = new Switch(header);
    below->move(0, 45);
    table->setHeaderView(header);
    SearchDisplayController search(bar, table);
    search.setSearchResultsDataSource(&rows);
    search.setSearchResultsDelegate(&rows);
    EXPECT_EQ(read(table)->child(0), read(header));
    EXPECT_EQ(read(table)->childCount(), 2);
    bar->field()->setText(QStringLiteral("x"));
    EXPECT_EQ(read(table)->childCount(), 1);
    EXPECT_EQ(read(table)->child(0), read(bar));
    EXPECT_EQ(read(&window)->childCount(), 2);
    search.setActive(false, false);
    EXPECT_EQ(read(table)->childCount(), 2);
    EXPECT_EQ(read(&window)->childCount(), 1);
}

TEST(TextFieldAccessibility, TextThatIsPutInCountsAsTypedAndDone) {
    installAccessibility();
    struct Delegate : TextFieldDelegate {
        void didEndEditing(TextField& field) override { done.append(field.text()); }
        QStringList done;
    } delegate;
    QWidget window;
    TextField field(&window);
    field.setDelegate(&delegate);
    window.show();
    auto* read = QAccessible::queryAccessibleInterface(&field);
    ASSERT_TRUE(read->editableTextInterface());
    read->editableTextInterface()->insertText(0, QStringLiteral("host"));
    EXPECT_EQ(delegate.done, QStringList{QStringLiteral("host")});
    field.becomeFirstResponder();
    read->editableTextInterface()->replaceText(0, 1, QStringLiteral("m"));
    EXPECT_EQ(read->text(QAccessible::Value), u"most");
    EXPECT_EQ(delegate.done.size(), 1) << "a person who edits it says when it is done";
    field.setEnabled(false);
    EXPECT_FALSE(read->editableTextInterface());
}

TEST(ReadingOrder, GoesLineByLineAndLeavesOutDecoration) {
    installAccessibility();
    QWidget view;
    const auto add = [&view](const char* name, const QRect& frame) {
        auto* label = new QLabel(QString::fromLatin1(name), &view);
        label->setGeometry(frame);
    };
    add("below", {0, 60, 100, 20});
    add("title", {40, 12, 100, 16});
    add("right", {200, 2, 32, 36});
    add("left", {0, 0, 32, 46});
    add("", {0, 0, 10, 10});
    add("hidden", {0, 0, 10, 10});
    view.findChildren<QLabel*>().last()->hide();
    (new QWidget(&view))->setGeometry(0, 38, 320, 2);
    view.show();
    QStringList names;
    const QAccessibleInterface* read = QAccessible::queryAccessibleInterface(&view);
    for (int index = 0; index < read->childCount(); ++index) names.append(read->child(index)->text(QAccessible::Name));
    EXPECT_EQ(names.join(u' '), u"left title right below");
}

}  // namespace
