#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

#include "simulator/DeviceDirectory.h"
#include "simulator/PrintingNotifyCenter.h"
#include "simulator/SimulatorOptions.h"
#include "store/Verbs.h"

using namespace Qt::StringLiterals;
using namespace simulator;

namespace {

std::variant<SimulatorOptions, Misuse, Help> parsed(const QString& line) {
    return parseArguments(QStringList(u"VexmorSimulator"_s) + line.split(u' ', Qt::SkipEmptyParts));
}

TEST(SimulatorOptions, TakesEveryOption) {
    const std::pair<QString, SimulatorOptions> cases[] = {
        {u"--device /tmp/phone"_s, {"/tmp/phone", u"iPhone"_s, {320, 568}, Network::host, u""_s}},
        {u"--network wwan --screen 320x480 --device=phone --model iPad --documentation-host 127.0.0.1:8000"_s,
         {"phone", u"iPad"_s, {320, 480}, Network::wwan, u"127.0.0.1:8000"_s}},
    };
    for (const auto& [line, taken] : cases) {
        const auto options = std::get<SimulatorOptions>(parsed(line));
        EXPECT_EQ(options.device, taken.device);
        EXPECT_EQ(options.model, taken.model);
        EXPECT_EQ(options.screen, taken.screen);
        EXPECT_EQ(options.network, taken.network);
        EXPECT_EQ(options.documentationHost, taken.documentationHost);
    }
}

TEST(SimulatorOptions, SaysInOneLineWhatItDoesNotTake) {
    const std::pair<QString, QString> cases[] = {
        // what the reason must name
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

TEST(DeviceDirectory, GetsTheFoldersThatAreMissingOrIsRefusedByTheNameOfWhatIsInTheWay) {
    const QTemporaryDir folder;
    const std::filesystem::path directory = folder.path().toStdString(), file = directory / "file";
    std::ofstream(file) << "kept";
    const std::tuple<std::filesystem::path, std::vector<std::filesystem::path>, std::string> cases[] = {
        {directory, {directory, directory / "b/c"}, ""},
        {directory / "missing", {}, directory / "missing"},
        {file, {}, file},
        {directory, {file / "below"}, file / "below"},
    };
    for (const auto& [given, folders, inTheWay] : cases) {
        const auto problem = prepareDeviceDirectory(given, folders);
        EXPECT_EQ(problem.value_or("").substr(0, inTheWay.size()), inTheWay);
        EXPECT_EQ(problem.has_value(), !inTheWay.empty()) << given;
    }
    EXPECT_TRUE(std::filesystem::is_directory(directory / "b/c"));
    EXPECT_EQ(std::filesystem::file_size(file), 4);
    EXPECT_FALSE(std::filesystem::exists(directory / "missing"));
}

TEST(PrintingNotifyCenter, PostsAndPrintsALineEach) {
    store::Posts posts;
    PrintingNotifyCenter center(posts);
    testing::internal::CaptureStdout();
    center.post(store::hookLate);
    center.post(store::reloadBoth);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "posted com.urmeld.vxm.hookLate\nposted com.urmeld.vxm.reloadBoth\n");
    EXPECT_EQ(posts.names, (std::vector<std::string>{"com.urmeld.vxm.hookLate", "com.urmeld.vxm.reloadBoth"}));
}

}  // namespace
