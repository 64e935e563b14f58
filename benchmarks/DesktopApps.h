#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace bench {

// Installs applications below a device's root, each with a desktop entry as desktops have them, translations included,
// and an icon of its own in the theme: PNG files of several sizes and SVG files. Returns their identifiers.
std::vector<std::string> installApps(const std::filesystem::path& root, std::size_t count);

}  // namespace bench
