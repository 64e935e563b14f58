#pragma once

#include <QImage>
#include <filesystem>

namespace platform {

// The icon in a PNG or SVG file (or in any other format that the toolkit reads) as a square of so many points, whole
// and centred, with the device pixel ratio `scale`. Null when the file is no regular file or no image. Any thread.
QImage readIcon(const std::filesystem::path& file, int points, double scale);

// The icon of something that has none. Any thread.
QImage genericIcon(int points, double scale);

}  // namespace platform
