#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "monkey/Random.h"
#include "store/Writers.h"

class TestDevice;

namespace monkey {

// What other programs do to the device while the app runs: apps and their icons come and go, the files are written,
// damaged and removed, the engine logs, people put exports and host lists into their folders.
class Surroundings {
public:
    Surroundings(TestDevice& device, Random& random);

    // One of these things. Says what.
    std::string change();

    bool isInstalled(std::string_view identifier) const;

private:
    std::string installApp();
    std::string uninstallApp();
    std::string changeIcon();
    std::string writeFile();
    std::string plantKey();
    std::string damageFile();
    std::string removeFile();
    std::string blockFile();
    std::string switchFirewall();
    std::string writeLog();
    std::string putExport();
    std::string putHostList();
    std::string changeFolder();

    store::File anyFile();
    std::string anyApp();
    std::string anyName();
    std::string rules();
    std::string record();
    std::string contentOf(store::File file);
    std::string noise(int bytes);
    std::filesystem::path applications() const;
    // In one step, as everybody who shares a file should; whatever was there is gone.
    void put(const std::filesystem::path& path, const std::string& bytes);
    void block(const std::filesystem::path& path);

    TestDevice& device_;
    Random& random_;
};

}  // namespace monkey
