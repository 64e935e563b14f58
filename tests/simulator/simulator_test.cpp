#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "simulator/DeviceDirectory.h"
#include "simulator/PrintingNotifyCenter.h"
#include "simulator/SimulatorOptions.h"

using namespace Qt::StringLiterals;
using namespace simulator;

namespace {

std::variant<SimulatorOptions, Misuse, Help> parsed(const QString& line) {
    return parseArguments(QStringList(u"VexmorSimulator"_s) + line.split(u' ', Qt::SkipEmptyParts));
}

TEST(SimulatorOptions, TakesEveryOption) {
    const auto plain = std::get<SimulatorOptions>(parsed(u"--device /tmp/phone"_s));
    EXPECT_EQ(plain.device, "/tmp/phone");
    EXPECT_EQ(plain.model, u"iPhone"_s);
    EXPECT_EQ(plain.screen, QSize(320, 568));
    EXPECT_EQ(plain.network, Network::host);
    EXPECT_TRUE(plain.documentationHost.isEmpty());

    const auto full = std::get<SimulatorOptions>(
        parsed(u"--network wwan --screen 320x480 --device=phone --model iPad --documentation-host 127.0.0.1:8000"_s));
    EXPECT_EQ(full.device, "phone");
    EXPECT_EQ(full.model, u"iPad"_s);
    EXPECT_EQ(full.screen, QSize(320, 480));
    EXPECT_EQ(full.network, Network::wwan);
    EXPECT_EQ(full.documentationHost, u"127.0.0.1:8000"_s);
}

TEST(SimulatorOptions, SaysInOneLineWhatItDoesNotTake) {
    const struct {
        QString line;
        QString named;  // what the reason must name
    } cases[] = {
        {u""_s, u"--device"_s},
        {u"--device"_s, u"device"_s},
        {u"--device= --model iPhone"_s, u"--device"_s},
        {u"--device d extra"_s, u"extra"_s},
        {u"--device d --colour red"_s, u"colour"_s},
        {u"--device d --screen 320"_s, u"320"_s},
        {u"--device d --screen 200x568"_s, u"200x568"_s},
        {u"--device d --screen 320x479"_s, u"320x479"_s},
        {u"--device d --screen 320x99999999999"_s, u"320x99999999999"_s},
        {u"--device d --network lan"_s, u"lan"_s},
    };
    for (const auto& [line, named] : cases) {
        const auto result = parsed(line);
        ASSERT_TRUE(std::holds_alternative<Misuse>(result)) << qPrintable(line);
        const QString reason = std::get<Misuse>(result).reason;
        EXPECT_TRUE(reason.contains(named)) << qPrintable(line) << ": " << qPrintable(reason);
        EXPECT_FALSE(reason.contains(u'\n')) << qPrintable(line);
    }
    EXPECT_TRUE(std::holds_alternative<Help>(parsed(u"--help"_s)));
}

class DeviceDirectory : public testing::Test {
protected:
    DeviceDirectory() {
        std::string name = testing::TempDir() + "device-XXXXXX";
        directory_ = mkdtemp(name.data());
    }
    ~DeviceDirectory() override { std::filesystem::remove_all(directory_); }

    std::filesystem::path directory_;
};

TEST_F(DeviceDirectory, GetsTheFoldersThatAreMissing) {
    const auto kept = directory_ / "a/file";
    std::filesystem::create_directory(directory_ / "a");
    std::ofstream(kept) << "kept";
    EXPECT_EQ(prepareDeviceDirectory(directory_, {directory_ / "a", directory_ / "b/c"}), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_directory(directory_ / "b/c"));
    EXPECT_EQ(std::filesystem::file_size(kept), 4);
}

TEST_F(DeviceDirectory, IsRefusedWithItsNameWhenItCannotBeUsed) {
    const auto file = directory_ / "file";
    std::ofstream(file) << "in the way";
    const struct {
        std::filesystem::path directory;
        std::vector<std::filesystem::path> folders;
        std::filesystem::path named;
    } cases[] = {
        {directory_ / "missing", {}, directory_ / "missing"},
        {file, {}, file},
        {directory_, {file / "below"}, file / "below"},
    };
    for (const auto& [directory, folders, named] : cases) {
        const auto problem = prepareDeviceDirectory(directory, folders);
        ASSERT_TRUE(problem) << directory;
        EXPECT_EQ(problem->rfind(named.string(), 0), 0) << *problem;
    }
    EXPECT_FALSE(std::filesystem::exists(directory_ / "missing"));
}

TEST(PrintingNotifyCenter, PostsAndPrintsALineEach) {
    struct Recorder : store::NotifyCenter {
        std::vector<std::string> posted;
        void post(std::string_view name) override { posted.emplace_back(name); }
    } recorder;
    PrintingNotifyCenter center(recorder);
    testing::internal::CaptureStdout();
    center.post(store::hookLate);
    center.post(store::reloadBoth);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "posted com.urmeld.vxm.hookLate\nposted com.urmeld.vxm.reloadBoth\n");
    EXPECT_EQ(recorder.posted, (std::vector<std::string>{"com.urmeld.vxm.hookLate", "com.urmeld.vxm.reloadBoth"}));
}

}  // namespace
