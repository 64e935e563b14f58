#include "support/TestDevice.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <fstream>
#include <sstream>

#include "platform/system/DesktopApplicationList.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"
#include "resources/Resources.h"
#include "support/RowNamed.h"

namespace fs = std::filesystem;

TestDevice::TestDevice(const QString& model, QSize screen)
    : store_((fs::create_directories(fs::path(directory_.path().toStdString()) / "var/mobile/Library/Preferences/Vxm"),
              directory_.path().toStdString()),
             recorder_) {
    const fs::path root = directory_.path().toStdString();
    fs::create_directories(root / "usr/share/applications");
    fs::create_directories(store_.listDirectory());
    applications_ =
        std::make_unique<platform::DesktopApplicationList>(platform::DesktopApplicationList::dataDirectories(root));
    device_.root = root;
    device_.notifyCenter = &recorder_;
    device_.applicationList = applications_.get();
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
                     device_.files().isDisabled()});
}

void TestDevice::install(const std::string& identifier, const std::string& name) {
    putBytes(device_.root / "usr/share/applications" / (identifier + ".desktop"),
             "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\nIcon=" + identifier + "\n");
}

void TestDevice::uninstall(const std::string& identifier) {
    fs::remove(device_.root / "usr/share/applications" / (identifier + ".desktop"));
}

void TestDevice::put(store::File file, const std::string& xmlContent) {
    putBytes(path(file), "<plist version=\"1.0\">" + xmlContent + "</plist>\n");
}

void TestDevice::putBytes(const fs::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

std::string TestDevice::bytes(store::File file) const {
    std::ostringstream content;
    content << std::ifstream(path(file), std::ios::binary).rdbuf();
    return content.str();
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
    for (auto* table : screen()->view()->findChildren<platform::TableView*>()) {
        if (table->isVisible()) top = table;
    }
    return top;
}

QWidget* TestDevice::targetAt(QPoint& point) const {
    QWidget* child = window()->childAt(point);
    QWidget* target = child ? child : window();
    point = target->mapFrom(window(), point);
    return target;
}

void TestDevice::tap(int x, int y) {
    QPoint point(x, y);
    QWidget* target = targetAt(point);
    QTest::mouseClick(target, Qt::LeftButton, {}, point);
    QApplication::processEvents();
}

void TestDevice::drag(int x1, int y1, int x2, int y2) {
    constexpr int steps = 10;
    QPoint start(x1, y1);
    QWidget* target = targetAt(start);
    QTest::mousePress(target, Qt::LeftButton, {}, start);
    for (int step = 1; step <= steps; ++step) {
        const QPoint moved = start + QPoint((x2 - x1) * step / steps, (y2 - y1) * step / steps);
        QTest::mouseMove(target, moved);
    }
    QTest::mouseRelease(target, Qt::LeftButton, {}, start + QPoint(x2 - x1, y2 - y1));
    QApplication::processEvents();
}

void TestDevice::tapRow(int section, int row, int x) {
    platform::TableView* shown = table();
    shown->scrollToRow({section, row});
    const QPoint middle = shown->viewport()->mapTo(window(), shown->rectForRow({section, row}).center());
    tap(x, middle.y());
}

void TestDevice::tapRow(QStringView name, int x) {
    const platform::IndexPath named = rowNamed(*table(), name);
    tapRow(named.section, named.row, x);
}

void TestDevice::swipeToDelete(int section, int row) {
    platform::TableView* shown = table();
    shown->scrollToRow({section, row});
    const int y = shown->viewport()->mapTo(window(), shown->rectForRow({section, row}).center()).y();
    drag(280, y, 100, y);
    tap(295, y);
}

void TestDevice::type(const QString& text) {
    QTest::keyClicks(QApplication::focusWidget() ? QApplication::focusWidget() : window(), text);
    QApplication::processEvents();
}

void TestDevice::key(int key) {
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window(), Qt::Key(key));
    QApplication::processEvents();
}

QStringList TestDevice::rowTexts(int section, int row) const {
    platform::TableView* shown = table();
    shown->scrollToRow({section, row});
    QApplication::processEvents();
    auto* cell = shown->cellForRow({section, row});
    if (!cell) return {};
    std::vector<std::pair<int, QString>> texts;
    for (auto* label : cell->findChildren<QLabel*>()) {
        if (!label->isHidden() && !label->text().isEmpty()) texts.emplace_back(label->y(), label->text());
    }
    for (auto* field : cell->findChildren<QLineEdit*>()) texts.emplace_back(field->y(), field->text());
    std::sort(texts.begin(), texts.end());
    QStringList lines;
    for (const auto& [y, text] : texts) lines.append(text);
    return lines;
}

int TestDevice::rows(int section) const {
    auto* dataSource = dynamic_cast<platform::TableViewDataSource*>(screen());
    return dataSource ? dataSource->numberOfRowsInSection(*table(), section) : 0;
}

platform::AlertView* TestDevice::alert() const {
    const auto shown = platform::AlertView::shownIn(window());
    return shown.isEmpty() ? nullptr : shown.last();
}

void TestDevice::answer(int buttonIndex) {
    QTest::mouseClick(alert()->button(buttonIndex), Qt::LeftButton);
    QApplication::processEvents();
}
