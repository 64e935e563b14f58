// What is said at start when the app may not write.
#include <gtest/gtest.h>

#include <sstream>

#include "support/TestDevice.h"

namespace {

struct WriteWarningTest : testing::Test, QObject {
    WriteWarningTest() {
        qApp->installEventFilter(this);
        device.device().notify = [this](const QString& summary, const QString& body) {
            EXPECT_TRUE(isPainted) << "the first frame must not wait for it";
            told << summary << body;
        };
    }

    bool eventFilter(QObject*, QEvent* event) override {
        isPainted = isPainted || event->type() == QEvent::Paint;
        return false;
    }

    // Starts the app and has it painted twice. Returns what it said on standard error; the toolkit says things as well.
    std::string launch() {
        testing::internal::CaptureStderr();
        device.launch();
        for (int frame = 0; frame < 2; ++frame) {
            device.window()->repaint();
            QApplication::processEvents();
        }
        std::istringstream output(testing::internal::GetCapturedStderr());
        std::string said;
        for (std::string line; std::getline(output, line);)
            if (line.starts_with("writewarning_test: ")) said += line + "\n";
        return said;
    }

    TestDevice device;
    std::filesystem::path folder = device.path(store::File::appRules).parent_path();
    bool isPainted = false;
    QStringList told;
};

TEST_F(WriteWarningTest, SaysOnceWhatHelps) {
    EXPECT_EQ(launch(), "") << "where changes are kept";
    EXPECT_TRUE(isPainted);
    EXPECT_EQ(told, QStringList());
    isPainted = false;
    std::filesystem::remove_all(folder);
    const std::string said = launch();
    const std::string line = "There is no " + folder.string() + ". Installing Vexmor again makes it.";
    EXPECT_EQ(said, "writewarning_test: Your changes will not be kept. " + line + "\n");
    EXPECT_EQ(told, (QStringList{QStringLiteral("Your changes will not be kept"), QString::fromStdString(line)}));
    EXPECT_FALSE(device.alert()) << "the screens are silent";
}

}  // namespace
