#pragma once

#include <QImage>
#include <filesystem>

namespace platform {

// Reads an icon from an SVG file or any image format of Qt (PNG among them) into a square of `points`, centred with its
// aspect ratio kept, with the device pixel ratio `scale`. Null when the file is not a regular file or not an image. Any
// thread.
QImage readIcon(const std::filesystem::path& file, int points, double scale);

// The placeholder icon. Any thread.
QImage genericIcon(int points, double scale);

}  // namespace platform
