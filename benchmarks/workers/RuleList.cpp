#include <QAbstractButton>
#include <QElapsedTimer>
#include <QLineEdit>

#include "benchmarks/Machine.h"
#include "benchmarks/Memory.h"
#include "benchmarks/workers/App.h"
#include "benchmarks/workers/Events.h"
#include "benchmarks/workers/Watchdog.h"
#include "benchmarks/workers/Workers.h"
#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "platform/ui/table/TableView.h"

namespace bench {

namespace {

constexpr int actionSection = 0;
constexpr int ruleSection = 1;
constexpr int okButton = 1;
constexpr const char* ruleCell = "views::VxmRuleCell";

double openList(App& app) {
    app.clock().settle();
    return app.clock().untilPainted(anyOf(ruleCell), [&] { app.tapRow(0, 1); });
}

void search(App& app, Figures& figures) {
    QLineEdit* field = app.screen()->view()->findChild<platform::SearchBar*>()->field();
    tap(*field);
    field->setFocus();
    const auto isResult = [&](const QWidget& painted) {
        return app.table()->isAncestorOf(&painted) && anyOf(ruleCell)(painted);
    };
    for (const auto& [name, key] : {std::pair("keystroke1", u't'), std::pair("keystroke2", u'r')}) {
        app.clock().settle();
        figures[name] = app.clock().untilPainted(isResult, [&, key = key] { type(*field, key); });
    }
    app.clock().settle();
    pressKey(*field, Qt::Key_Escape);
    app.clock().settle();
    if (!field->text().isEmpty()) field->clear();
}

double addRule(App& app) {
    app.tapRow(actionSection, 0);
    app.clock().settle();
    for (const QChar character : QStringLiteral("middle.example.com")) type(*QApplication::focusWidget(), character);
    return app.untilReplaced(app.device().globalRules(), [&] { app.answer(okButton); });
}

double deleteRule(App& app) {
    constexpr platform::IndexPath row{ruleSection, 3};
    platform::TableView* table = app.table();
    table->scrollToRow(row);
    app.clock().settle();
    const int y = table->rectForRow(row).center().y();
    QWidget& viewport = *table->viewport();
    press(viewport, {280, y});
    for (int x = 260; x >= 100; x -= 20) moveTo(viewport, {x, y});
    release(viewport, {100, y});
    app.clock().settle();
    QWidget* deleteButton = viewport.childAt(295, y);
    return app.untilReplaced(app.device().globalRules(), [&] { tap(*deleteButton); });
}

void sortBy(App& app, const QString& button) {
    tap(*app.button(button));
    app.clock().settle();
}

void fling(App& app) {
    platform::AnimationClock::setInstant(false);
    for (const int direction : {-1, -1, 1}) {
        app.flick(direction);
        app.clock().settle();
    }
    platform::AnimationClock::setInstant(true);
}

double editRule(App& app) {
    constexpr platform::IndexPath row{ruleSection, 4};
    tap(*app.button(QStringLiteral("Edit")));
    app.table()->scrollToRow(row);
    app.clock().settle();
    app.tapRow(row.section, row.row);
    type(*QApplication::focusWidget(), u'x');
    return app.untilReplaced(app.device().globalRules(),
                             [] { pressKey(*QApplication::focusWidget(), Qt::Key_Return); });
}

}  // namespace

Figures useRuleList(const Arguments& arguments) {
    App app(arguments.at(0));
    Figures figures;
    figures["open"] = openList(app);
    app.clock().settle();
    figures["resident"] = residentMemory();
    search(app, figures);
    const std::array<std::pair<const char*, double (*)(App&)>, 3> changes{
        {{"add", addRule}, {"delete", deleteRule}, {"edit", editRule}}};
    for (const auto& [name, change] : changes) {
        settleMachine();
        figures[name] = change(app);
    }
    return figures;
}

Figures watchTwoMinutesOfUse(const Arguments& arguments) {
    constexpr qint64 milliseconds = 120'000;
    App app(arguments.at(0));
    app.openDenyList();
    const Watchdog watchdog;
    app.clock().disregard(watchdog);
    Figures figures;
    QElapsedTimer used;
    for (used.start(); used.elapsed() < milliseconds;) {
        search(app, figures);
        fling(app);
        sortBy(app, QStringLiteral("Sort by Date"));
        fling(app);
        sortBy(app, QStringLiteral("Sort by Name"));
        addRule(app);
        deleteRule(app);
    }
    return {{"absence", watchdog.longestAbsence()}};
}

}  // namespace bench
