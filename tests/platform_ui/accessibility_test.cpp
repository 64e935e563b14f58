// What a table, an alert and a field are to a screen reader.

#include "platform/ui/accessibility/Accessibility.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/Switch.h"
#include "platform/ui/controls/TextField.h"
#include "platform_ui/TableTest.h"

namespace {

using namespace Qt::StringLiterals;
using namespace platform;
using Action = QAccessibleActionInterface;

constexpr int many = 1'000'000;  // positions, with the two fixed rows

// Whether the action is offered.
bool act(QAccessibleInterface* element, const QString& action) {
    const bool offered = element->actionInterface()->actionNames().contains(action);
    element->actionInterface()->doAction(action);
    return offered;
}

struct AccessibilityTest : TableTest {
    AccessibilityTest() { installAccessibility(); }
    void SetUp() override { show(many - 2); }

    QAccessibleInterface* list() const { return read(table.get())->child(read(table.get())->childCount() - 1); }
    QAccessibleInterface* row(int position) const { return list()->child(position); }
};

TEST_F(AccessibilityTest, RowsAreMadeWhenTheyAreAskedFor) {
    const int asked = rows->asked;
    EXPECT_EQ(list()->role(), QAccessible::List);
    EXPECT_EQ(list()->childCount(), many);
    EXPECT_EQ(list()->tableInterface()->rowCount(), many);
    EXPECT_EQ(rows->asked, asked);
    QAccessibleInterface* far = row(many / 2);
    EXPECT_EQ(far->text(QAccessible::Name), QString::number(many / 2 - 2));
    EXPECT_TRUE(far->state().offscreen);
    EXPECT_EQ(list()->indexOfChild(far), many / 2);
    EXPECT_EQ(far->parent(), list());
    EXPECT_LE(rows->asked, asked + 2);
    EXPECT_EQ(table->contentOffset(), 0) << "reading does not scroll";
    EXPECT_TRUE(act(far, Action::setFocusAction()));
    EXPECT_FALSE(far->state().offscreen);
    EXPECT_TRUE(far->state().focused);
    EXPECT_EQ(read(table.get())->focusChild(), far);
    for (int position = 0; position < 10'000; ++position) ASSERT_TRUE(row(position));
    EXPECT_EQ(row(9'999)->text(QAccessible::Name), u"9997");
    EXPECT_EQ(row(2)->text(QAccessible::Name), u"0");
    EXPECT_EQ(list()->child(many), nullptr);
}

TEST_F(AccessibilityTest, RowsDoWhatAFingerDoes) {
    auto* control = new Switch;
    table->cellForRow({1, 1})->setAccessoryView(control);
    QAccessibleInterface* toggled = row(3);
    ASSERT_TRUE(toggled->state().checkable);
    EXPECT_TRUE(act(toggled, Action::toggleAction()));
    EXPECT_TRUE(toggled->state().checked);
    EXPECT_EQ(toggled->child(0)->child(0), read(control));
    EXPECT_EQ(read(control)->parent()->parent(), toggled);
    control->setEnabled(false);
    EXPECT_FALSE(act(toggled, Action::toggleAction()));
    EXPECT_TRUE(toggled->state().checked);

    EXPECT_TRUE(act(row(many - 1), Action::pressAction()));
    EXPECT_EQ(rows->told, QStringList{u"selected 999997"_s});
    EXPECT_FALSE(act(row(0), u"delete"_s));
    EXPECT_TRUE(act(row(7), u"delete"_s));
    EXPECT_EQ(rows->told.last(), u"deleted 5");
    EXPECT_EQ(list()->childCount(), many - 1);
}

TEST_F(AccessibilityTest, AnAlertIsAllThereIs) {
    auto* alert = new AlertView(u"Sure?"_s, u"Think."_s, nullptr, u"No"_s);
    alert->show(table.get());
    ASSERT_EQ(read(window.get())->childCount(), 1);
    EXPECT_EQ(read(window.get())->child(0)->child(0), read(alert));
    EXPECT_EQ(read(alert)->role(), QAccessible::AlertMessage);
    EXPECT_EQ(read(alert)->text(QAccessible::Name), u"Sure?");
    EXPECT_EQ(read(alert->button(0))->text(QAccessible::Name), u"No");
    EXPECT_TRUE(read(alert)->state().modal);
    act(row(3), Action::pressAction());
    act(row(3), u"delete"_s);
    EXPECT_TRUE(rows->told.isEmpty());
    act(read(alert->button(0)), Action::pressAction());
    EXPECT_TRUE(QTest::qWaitFor([this] { return read(window.get())->child(0) == read(table.get()); }));
}

TEST_F(AccessibilityTest, TextThatIsPutInCountsAsTypedAndDone) {
    struct Delegate : TextFieldDelegate {
        void didEndEditing(TextField& field) override { done.append(field.text()); }
        QStringList done;
    } delegate;
    TextField field(window.get());
    field.setDelegate(&delegate);
    field.show();
    auto* editable = read(&field)->editableTextInterface();
    ASSERT_TRUE(editable);
    editable->insertText(0, u"host"_s);
    EXPECT_EQ(delegate.done, QStringList{u"host"_s});
    field.becomeFirstResponder();
    editable->replaceText(0, 1, u"m"_s);
    editable->replaceText(1, 2, u"i"_s);
    EXPECT_EQ(read(&field)->text(QAccessible::Value), u"mist");
    EXPECT_EQ(delegate.done.size(), 1) << "a person who edits it says when it is done";
    field.setEnabled(false);
    EXPECT_FALSE(read(&field)->editableTextInterface());
}

TEST_F(AccessibilityTest, ReadingGoesLineByLineAndLeavesOutDecoration) {
    const std::pair<QString, QRect> labels[] = {
        {u"below"_s, {0, 60, 100, 20}}, {u"title"_s, {40, 12, 100, 16}}, {u"right"_s, {200, 2, 32, 36}},
        {u"left"_s, {0, 0, 32, 46}},    {u"lower"_s, {9, 20, 90, 30}},   {QString(), {0, 0, 10, 10}},
        {u"hidden"_s, {0, 0, 10, 10}},
    };
    QWidget view;
    for (const auto& [name, frame] : labels) {
        auto* label = new QLabel(name, &view);
        label->setGeometry(frame);
        label->setVisible(name != u"hidden");
    }
    (new QWidget(&view))->setGeometry(0, 38, 320, 2);
    view.show();
    QStringList names;
    for (int index = 0; index < read(&view)->childCount(); ++index)
        names.append(read(&view)->child(index)->text(QAccessible::Name));
    EXPECT_EQ(names.join(u' '), u"left title right lower below");
}

}  // namespace
