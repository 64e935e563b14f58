#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

// Creates the folders that exist on every device below a device directory. Returns nothing on success, otherwise the
// reason of the failure, as one line.
std::optional<std::string> prepareDeviceDirectory(const std::filesystem::path& directory,
                                                  const std::vector<std::filesystem::path>& folders);

}  // namespace simulator
