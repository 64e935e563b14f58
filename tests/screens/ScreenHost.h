#pragma once

#include <QApplication>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"
#include "store/ConfigurationStore.h"
#include "store/NotifyCenter.h"
#include "store/plist/PropertyListFile.h"
#include "support/RowNamed.h"
#include "views/Chrome.h"

// One screen in a window of its own, over real files in a temporary directory, driven by real events. Animations are
// instant.
class ScreenHost : public store::NotifyCenter {
public:
    // A notification and what the files held when it came.
    struct Post {
        std::string name;
        std::optional<store::Dictionary> appRules;
        std::optional<store::Dictionary> globalRules;
        bool isDisabled;
        bool isAlertShown;
    };

    ScreenHost() {
        platform::AnimationClock::setInstant(true);
        std::filesystem::create_directories(store.exportDirectory());
        std::filesystem::create_directories(store.listDirectory());
    }
    ~ScreenHost() override {
        platform::AnimationClock::setInstant(false);
        window.reset();
        // QTemporaryDir leaves behind what has no name in Unicode.
        std::filesystem::remove_all(directory.path().toStdString());
    }

    void post(std::string_view name) override {
        posts.push_back({std::string(name), store.read(store::File::appRules), store.read(store::File::globalRules),
                         store.isDisabled(), alert() != nullptr});
    }

    template <typename Screen, typename... Arguments>
    Screen* show(Arguments&&... arguments) {
        auto made = std::make_unique<Screen>(chrome, store, std::forward<Arguments>(arguments)...);
        Screen* screen = made.get();
        shown = screen;
        window = std::make_unique<platform::NavigationController>(std::move(made));
        window->resize(chrome.windowSize());
        window->show();
        window->activateWindow();
        QApplication::processEvents();
        return screen;
    }

    static void put(const std::filesystem::path& path, std::string_view bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    void put(store::File file, const std::string& content) {
        put(store.path(file), "<plist version=\"1.0\">" + content + "</plist>\n");
    }
    static std::string bytes(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    platform::TableView* table() const { return shown->view()->findChild<platform::TableView*>(); }

    // A row by its place, or by what it says.
    platform::TableViewCell* cell(QStringView name) const { return cell(rowNamed(*table(), name)); }
    platform::TableViewCell* cell(platform::IndexPath row) const {
        table()->scrollToRow(row);
        QApplication::processEvents();
        return table()->cellForRow(row);
    }

    void tapRow(QStringView name) const { tapRow(rowNamed(*table(), name)); }
    void tapRow(platform::IndexPath row) const {
        table()->scrollToRow(row);
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, table()->rectForRow(row).center());
        QApplication::processEvents();
    }

    void tapButton(const QString& accessibleName) const {
        for (auto* button : shown->view()->findChildren<platform::ImageButton*>()) {
            if (button->accessibleName() == accessibleName || button->text() == accessibleName) {
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
        QApplication::processEvents();
    }

    platform::AlertView* alert() const {
        if (!window) return nullptr;
        const auto alerts = platform::AlertView::shownIn(window.get());
        return alerts.isEmpty() ? nullptr : alerts.last();
    }

    void answer(int buttonIndex) const {
        QTest::mouseClick(alert()->button(buttonIndex), Qt::LeftButton);
        QApplication::processEvents();
    }

    QTemporaryDir directory;
    views::Chrome chrome{false, QStringLiteral("iPhone"), {320, 568}};
    store::ConfigurationStore store{directory.path().toStdString(), *this};
    std::vector<Post> posts;
    platform::ViewController* shown = nullptr;
    std::unique_ptr<platform::NavigationController> window;
};
