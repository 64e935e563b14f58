#pragma once

#include <QColor>

// The colours that the controls are drawn with, besides white.
namespace platform::palette {

inline constexpr QColor bar{245, 245, 245};
inline constexpr QColor ink{98, 111, 111};
inline constexpr QColor quiet{161, 176, 176};
inline constexpr QColor accent{55, 171, 200};
inline constexpr QColor accentInk{20, 112, 136};         // the accent dark enough for text and the focus frame
inline constexpr QColor hint{108, 120, 120};             // placeholder text
inline constexpr QColor red{192, 72, 72};                // behind "Delete"
inline constexpr QColor redInk{176, 60, 60};             // the red dark enough for text: titles of destructive buttons
inline constexpr QColor pressedRed{170, 60, 60};         // while it is pressed
inline constexpr QColor pressedVeil{161, 176, 176, 50};  // overlay of a pressed or selected item

}  // namespace platform::palette
