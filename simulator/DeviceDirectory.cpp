#include "simulator/DeviceDirectory.h"

#include <unistd.h>

#include <system_error>

namespace simulator {

std::optional<std::string> prepareDeviceDirectory(const std::filesystem::path& directory,
                                                  const std::vector<std::filesystem::path>& folders) {
    std::error_code error;
    if (!std::filesystem::is_directory(directory, error)) {
        return directory.string() +
               (std::filesystem::exists(directory, error) ? " is not a directory" : " does not exist");
    }
    if (::access(directory.c_str(), W_OK | X_OK) != 0) return directory.string() + " cannot be written to";
    for (const std::filesystem::path& folder : folders) {
        std::filesystem::create_directories(folder, error);
        if (error) return folder.string() + " cannot be made: " + error.message();
    }
    return std::nullopt;
}

}  // namespace simulator
