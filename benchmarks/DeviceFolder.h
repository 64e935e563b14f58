#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "benchmarks/SilentNotifyCenter.h"
#include "store/ConfigurationStore.h"

namespace bench {

// A device's file system in a folder, with what is to be measured on it.
class DeviceFolder {
public:
    // Makes the folders that a device has.
    explicit DeviceFolder(std::filesystem::path root);

    const std::filesystem::path& root() const { return root_; }
    store::ConfigurationStore& files() { return files_; }
    std::filesystem::path globalRules() const { return files_.path(store::File::globalRules); }

    // An app that is this program, under the firewall.
    void putApp(const std::string& identifier, const std::filesystem::path& program);
    // The global deny list, as the app writes it; nothing tells first-time users anything any more.
    void putRules(const std::vector<std::string>& hosts);
    // The same in a list to import.
    void putHostList(const std::vector<std::string>& hosts);
    // UTF-16 as the engine writes it.
    void putLog(std::size_t bytes);

private:
    std::filesystem::path root_;
    SilentNotifyCenter notifyCenter_;
    store::ConfigurationStore files_;
};

// A text a line.
void writeLines(const std::filesystem::path& file, const std::vector<std::string>& lines);

}  // namespace bench
