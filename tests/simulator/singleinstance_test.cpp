// What a second process of the app does, as far as it needs no second process.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <QTest>
#include <QWidget>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <optional>
#include <string>

#include "app/SingleInstance.h"
#include "store/files/Descriptor.h"
#include "support/AnotherPerson.h"
#include "support/TestDevice.h"

namespace fs = std::filesystem;

namespace {

class SingleInstanceTest : public testing::Test {
protected:
    static std::optional<int> start(const fs::path& root) { return app::SingleInstance(root).exitStatus(); }

    TestDevice device;
    fs::path root = device.device().root;
    fs::path folder = device.path(store::File::appRules).parent_path();
};

TEST_F(SingleInstanceTest, HandsOverTheTokenAndShowsAMinimizedWindow) {
    const app::SingleInstance first(root);
    EXPECT_EQ(first.exitStatus(), std::nullopt);
    device.launch();
    device.window()->showMinimized();
    QList<QByteArray> tokens;
    first.answer(*device.window(), [&](const QByteArray& token) {
        tokens += token;
        device.bringToFront(token);
    });
    qputenv("XDG_ACTIVATION_TOKEN", "a token");
    std::future<std::optional<int>> second = std::async(std::launch::async, start, root);
    EXPECT_TRUE(QTest::qWaitFor([&] { return second.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    EXPECT_EQ(second.get(), 0);
    EXPECT_EQ(tokens, QList<QByteArray>{"a token"});
    EXPECT_FALSE(device.window()->isMinimized());
    EXPECT_TRUE(QTest::qWaitForWindowActive(device.window()));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN")) << "it is used up";
}

// The lock alone: another user's process has a name of its own.
TEST_F(SingleInstanceTest, SharesTheDeviceWithNoOtherUser) {
    const store::Descriptor others(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto lock = [&] { return flock(others.number(), LOCK_EX | LOCK_NB); };
    {
        const app::SingleInstance first(root);
        EXPECT_NE(lock(), 0);
    }
    EXPECT_EQ(lock(), 0);
    EXPECT_EQ(start(root), EXIT_FAILURE);
}

TEST_F(SingleInstanceTest, RunsBesideAnotherOneWhereNothingCanBeLostOrLocked) {
    const struct {
        std::string name;
        std::function<void()> prepare;
    } cases[] = {
        {"the folder can be read only", [&] { fs::permissions(folder, fs::perms(0555)); }},
        {"the folder cannot be read", [&] { fs::permissions(folder, fs::perms(0333)); }},
        {"there is no folder",
         [&] {
             fs::permissions(folder, fs::perms::all);
             fs::remove_all(folder);
         }},
    };
    for (fs::path above = folder.parent_path(); above != fs::temp_directory_path(); above = above.parent_path())
        fs::permissions(above, fs::perms::all);
    const app::SingleInstance first(root);
    for (const auto& [name, prepare] : cases) {
        prepare();
        const AnotherPerson somebody;
        EXPECT_EQ(start(root), std::nullopt) << name;
    }
}

}  // namespace
