#pragma once

#include <QColor>

// The colours that the controls are drawn with, besides white.
namespace platform::palette {

inline constexpr QColor bar{245, 245, 245};
inline constexpr QColor ink{98, 111, 111};
inline constexpr QColor quiet{161, 176, 176};
inline constexpr QColor accent{55, 171, 200};

}  // namespace platform::palette
