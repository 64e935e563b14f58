#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

// Makes the folders below a device directory that a real device is never without. Returns nothing when the directory
// can be used, otherwise why it cannot, in one line.
std::optional<std::string> prepareDeviceDirectory(const std::filesystem::path& directory,
                                                  const std::vector<std::filesystem::path>& folders);

}  // namespace simulator
