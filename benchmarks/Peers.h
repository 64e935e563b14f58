#pragma once

#include <filesystem>
#include <string>

namespace bench {

// Seconds of other programs at the nearest work that they know. None of them leaves anything behind.
double copyAndSync(const std::filesystem::path& file);
double sortLines(const std::filesystem::path& file);
double sortDistinctLines(const std::filesystem::path& file);
double countLinesWith(const std::string& text, const std::filesystem::path& file);
double utf8FromUtf16(const std::filesystem::path& file);

}  // namespace bench
