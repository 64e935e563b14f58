#pragma once

#include <QtTest>
#include <QtWidgets>

#include "app/VxmAppDelegate.h"
#include "platform/desktop/DataDirectories.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform/system/Device.h"
#include "platform/system/FixedNetwork.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/table/IndexPath.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"
#include "store/Files.h"
#include "store/NotifyCenter.h"
#include "store/Writers.h"
#include "store/plist/PropertyList.h"

// A device in a temporary directory with the whole app running on it, in a real window, driven by real events in the
// window's points. Animations are instant.
class TestDevice {
public:
    // What was posted, with the files as they were at that moment.
    struct Post {
        std::string name;
        std::optional<store::Dictionary> appRules;
        std::optional<store::Dictionary> globalRules;
        bool isDisabled = false;
        bool isAlertShown = false;
    };

    explicit TestDevice(const QString& model = QStringLiteral("iPhone"), QSize screen = {320, 568});
    ~TestDevice();

    void install(const std::string& identifier, const std::string& name);
    void uninstall(const std::string& identifier) {
        std::filesystem::remove(applicationFolder_ / (identifier + ".desktop"));
    }
    std::filesystem::path path(store::File file) const { return store_.path(file); }
    const store::ConfigurationStore& files() const { return store_; }
    void put(store::File file, const std::string& xmlContent);
    static void putBytes(const std::filesystem::path& file, const std::string& bytes) { store::put(file, bytes); }
    std::string bytes(store::File file) const { return bytes(path(file)); }
    static std::string bytes(const std::filesystem::path& file) { return store::contentOf(file); }
    std::optional<store::Dictionary> plist(store::File file) const { return store_.read(file); }
    const std::vector<Post>& posts() const { return recorder_.posts; }

    // What the app is given when it is launched.
    platform::Device& device() { return device_; }
    platform::DesktopApplicationList& applications() { return applications_; }
    void launch();
    void terminate();
    void bringToFront(const QByteArray& activationToken) { app_->bringToFront(activationToken); }

    QWidget* window() const;
    platform::NavigationController* navigation() const { return app_->navigationController(); }
    platform::ViewController* screen() const;
    // The table of the screen, or the search results over it.
    platform::TableView* table() const;

    void tap(int x, int y);
    // Taps the middle of a row of the table in sight, by its place or by what it says.
    void tapRow(int section, int row, int x = 120);
    void tapRow(QStringView name, int x = 120);
    // Opens the settings and taps a row there.
    void tapSetting(QStringView name, int x = 120);
    // Taps the middle of a button of the screen, by its name or its text.
    void tapButton(QStringView name);
    void drag(int x1, int y1, int x2, int y2);
    // Swipes a row to the left and taps "Delete".
    void swipeToDelete(int section, int row);
    void type(const QString& text);
    void key(int key);
    // The row of the table that says this, scrolled into sight.
    platform::TableViewCell* cell(QStringView name) const;
    // Texts of the row's labels and fields, top to bottom.
    QStringList rowTexts(int section, int row) const;
    int rows(int section) const;
    // The topmost text of each row.
    QStringList titles(int section) const;

    // The alert on top, or nullptr; and its buttons.
    platform::AlertView* alert() const;
    void answer(int buttonIndex);

private:
    class Recorder : public store::NotifyCenter {
    public:
        explicit Recorder(const TestDevice& device) : device_(device) {}
        void post(std::string_view name) override;
        std::vector<Post> posts;

    private:
        const TestDevice& device_;
    };

    std::pair<QWidget*, QPoint> targetAt(QPoint point) const;
    int middleOfRow(platform::IndexPath row) const;
    QWidget* focus() const;

    const store::TemporaryDirectory directory_;
    const std::filesystem::path root_ = directory_.path();
    const std::filesystem::path applicationFolder_ = root_ / "usr/share/applications";
    Recorder recorder_{*this};
    store::ConfigurationStore store_{root_, recorder_};
    platform::DesktopApplicationList applications_{platform::dataDirectories(root_)};
    platform::FixedNetwork network_{platform::FixedNetwork::Kind::wifi};
    platform::Device device_;
    std::unique_ptr<app::VxmAppDelegate> app_;
};
