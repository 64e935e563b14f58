#include "benchmarks/workers/App.h"

#include <sys/stat.h>

#include <QAbstractButton>
#include <QElapsedTimer>
#include <stdexcept>

#include "app/Run.h"
#include "benchmarks/workers/Events.h"
#include "platform/desktop/DataDirectories.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform/system/FixedNetwork.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/table/TableView.h"
#include "resources/Resources.h"

#include <QPushButton>

namespace bench {

namespace {

constexpr int denyRow = 1;

// What a program has to settle before its application object is made.
int& argumentCount() {
    static int count = 1;
    app::prepare().join();
    resources::initialize();
    return count;
}

char** arguments() {
    static char name[] = "vexmor-bench";
    static char* list[] = {name, nullptr};
    return list;
}

// A file that is replaced by another is another file, whatever it is called.
ino_t identity(const std::filesystem::path& file) {
    struct stat status {};
    return stat(file.c_str(), &status) == 0 ? status.st_ino : 0;
}

}  // namespace

App::App(const std::string& deviceFolder)
    : folder_(deviceFolder),
      application_(argumentCount(), arguments()),
      applications_(
          std::make_unique<platform::DesktopApplicationList>(platform::dataDirectories(deviceFolder), deviceFolder)),
      network_(std::make_unique<platform::FixedNetwork>(platform::FixedNetwork::Kind::wifi)) {
    applications_->setScale(application_.devicePixelRatio());
    platform::AnimationClock::setInstant(true);
    device_.root = deviceFolder;
    device_.notifyCenter = &notifyCenter_;
    device_.applicationList = applications_.get();
    device_.network = network_.get();
    device_.openURL = [](const QUrl&) {};
    delegate_ = std::make_unique<app::VxmAppDelegate>(device_);
    clock_.untilPainted(anyOf("views::VxmAppCell"), [this] { delegate_->didFinishLaunching(); });
    window()->activateWindow();
    clock_.settle();
}

App::~App() = default;

platform::ViewController* App::screen() const {
    return delegate_->navigationController()->visibleViewController();
}

platform::TableView* App::table() const {
    platform::TableView* top = nullptr;
    for (auto* table : screen()->view()->findChildren<platform::TableView*>()) {
        if (table->isVisible()) top = table;
    }
    return top;
}

QAbstractButton* App::button(const QString& name) const {
    for (auto* button : screen()->view()->findChildren<QAbstractButton*>()) {
        if (button->isVisible() && (button->accessibleName() == name || button->text() == name)) return button;
    }
    throw std::runtime_error("there is no button " + name.toStdString());
}

void App::tapRow(int section, int row) {
    platform::TableView* shown = table();
    shown->scrollToRow({section, row});
    tap(*shown->viewport(), shown->rectForRow({section, row}).center());
}

void App::flick(int direction) {
    constexpr int stepPoints = 25;
    constexpr int steps = 6;
    QWidget& viewport = *table()->viewport();
    QPoint finger(160, direction < 0 ? 300 : 120);
    press(viewport, finger);
    for (int step = 0; step < steps; ++step) {
        QElapsedTimer timer;
        timer.start();
        clock_.framesUntil([&] { return timer.elapsed() >= 10; });
        finger.ry() += direction * stepPoints;
        moveTo(viewport, finger);
    }
    release(viewport, finger);
}

void App::answer(int button) {
    const auto alerts = platform::AlertView::shownIn(window());
    if (alerts.isEmpty()) throw std::runtime_error("nobody asked");
    tap(*alerts.last()->button(button));
}

void App::openDenyList() {
    tapRow(0, denyRow);
    clock_.settle();
}

void App::openSettings() {
    tap(*button(QStringLiteral("Settings")));
    clock_.settle();
}

double App::untilReplaced(const std::filesystem::path& file, const std::function<void()>& event) {
    clock_.settle();
    const ino_t before = identity(file);
    return clock_.until([&] { return identity(file) != before; }, event);
}

}  // namespace bench
