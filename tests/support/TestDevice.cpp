#include "support/TestDevice.h"

#include "platform/ui/motion/AnimationClock.h"
#include "resources/Resources.h"
#include "support/RowNamed.h"

namespace fs = std::filesystem;

TestDevice::TestDevice(const QString& model, QSize screen) {
    for (const fs::path& folder : {applicationFolder_, store_.exportDirectory(), store_.listDirectory()})
        fs::create_directories(folder);
    device_.root = root_;
    device_.notifyCenter = &recorder_;
    device_.applicationList = &applications_;
    device_.network = &network_;
    device_.openURL = [](const QUrl&) {};
    device_.model = model;
    device_.screen = screen;
    resources::initialize();
    platform::AnimationClock::setInstant(true);
}

TestDevice::~TestDevice() {
    app_.reset();
    platform::AnimationClock::setInstant(false);
}

void TestDevice::Recorder::post(std::string_view name) {
    posts.push_back({std::string(name), device_.plist(store::File::appRules), device_.plist(store::File::globalRules),
                     device_.files().isDisabled(), device_.app_ && device_.alert()});
}

void TestDevice::install(const std::string& identifier, const std::string& name) {
    putBytes(applicationFolder_ / (identifier + ".desktop"),
             "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\nIcon=" + identifier + "\n");
}

void TestDevice::put(store::File file, const std::string& xmlContent) {
    putBytes(path(file), "<plist version=\"1.0\">" + xmlContent + "</plist>\n");
}

void TestDevice::launch() {
    app_ = std::make_unique<app::VxmAppDelegate>(device_);
    app_->didFinishLaunching();
    window()->activateWindow();
    QApplication::processEvents();
}

void TestDevice::terminate() {
    app_->applicationWillTerminate();
    app_.reset();
}

QWidget* TestDevice::window() const {
    return app_->window();
}

platform::ViewController* TestDevice::screen() const {
    return app_->navigationController()->visibleViewController();
}

platform::TableView* TestDevice::table() const {
    platform::TableView* top = nullptr;
    for (auto* table : screen()->view()->findChildren<platform::TableView*>())
        if (table->isVisible()) top = table;
    return top;
}

// The widget at a point of the window, with the point in its own coordinates.
std::pair<QWidget*, QPoint> TestDevice::targetAt(QPoint point) const {
    QWidget* child = window()->childAt(point);
    QWidget* target = child ? child : window();
    return {target, target->mapFrom(window(), point)};
}

void TestDevice::tap(int x, int y) {
    const auto [target, point] = targetAt({x, y});
    QTest::mouseClick(target, Qt::LeftButton, {}, point);
    QApplication::processEvents();
}

void TestDevice::drag(int x1, int y1, int x2, int y2) {
    constexpr int steps = 10;
    const QPoint way(x2 - x1, y2 - y1);
    const auto [target, start] = targetAt({x1, y1});
    QTest::mousePress(target, Qt::LeftButton, {}, start);
    for (int step = 1; step <= steps; ++step) QTest::mouseMove(target, start + way * step / steps);
    QTest::mouseRelease(target, Qt::LeftButton, {}, start + way);
    QApplication::processEvents();
}

// Scrolls to it.
int TestDevice::middleOfRow(platform::IndexPath row) const {
    platform::TableView* shown = table();
    shown->scrollToRow(row);
    return shown->viewport()->mapTo(window(), shown->rectForRow(row).center()).y();
}

void TestDevice::tapRow(int section, int row, int x) {
    tap(x, middleOfRow({section, row}));
}

void TestDevice::tapRow(QStringView name, int x) {
    const platform::IndexPath named = rowNamed(*table(), name);
    tapRow(named.section, named.row, x);
}

void TestDevice::tapSetting(QStringView name, int x) {
    tap(26, 20);
    tapRow(name, x);
}

void TestDevice::tapButton(QStringView name) {
    for (const auto* button : screen()->view()->findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || (button->accessibleName() != name && button->text() != name)) continue;
        const QPoint middle = button->mapTo(window(), button->rect().center());
        return tap(middle.x(), middle.y());
    }
}

void TestDevice::swipeToDelete(int section, int row) {
    const int y = middleOfRow({section, row});
    drag(280, y, 100, y);
    tap(295, y);
}

QWidget* TestDevice::focus() const {
    return QApplication::focusWidget() ? QApplication::focusWidget() : window();
}

void TestDevice::type(const QString& text) {
    QTest::keyClicks(focus(), text);
    QApplication::processEvents();
}

void TestDevice::key(int key) {
    QTest::keyClick(focus(), Qt::Key(key));
    QApplication::processEvents();
}

platform::TableViewCell* TestDevice::cell(QStringView name) const {
    const platform::IndexPath row = rowNamed(*table(), name);
    table()->scrollToRow(row);
    QApplication::processEvents();
    return table()->cellForRow(row);
}

QStringList TestDevice::rowTexts(int section, int row) const {
    platform::TableView* shown = table();
    shown->scrollToRow({section, row});
    QApplication::processEvents();
    auto* cell = shown->cellForRow({section, row});
    if (!cell) return {};
    QMultiMap<int, QString> texts;  // by their height
    for (auto* label : cell->findChildren<QLabel*>())
        if (!label->isHidden() && !label->text().isEmpty()) texts.insert(label->y(), label->text());
    for (auto* field : cell->findChildren<QLineEdit*>()) texts.insert(field->y(), field->text());
    return texts.values();
}

int TestDevice::rows(int section) const {
    auto* dataSource = dynamic_cast<platform::TableViewDataSource*>(screen());
    return dataSource ? dataSource->numberOfRowsInSection(*table(), section) : 0;
}

QStringList TestDevice::titles(int section) const {
    QStringList titles;
    for (int row = 0; row < rows(section); ++row) titles.append(rowTexts(section, row).value(0));
    return titles;
}

platform::AlertView* TestDevice::alert() const {
    const auto shown = platform::AlertView::shownIn(window());
    return shown.isEmpty() ? nullptr : shown.last();
}

void TestDevice::answer(int buttonIndex) {
    QTest::mouseClick(alert()->button(buttonIndex), Qt::LeftButton);
    QApplication::processEvents();
}
