#pragma once

#include <QColor>

// The colours that the controls are drawn with, besides white.
namespace platform::palette {

inline constexpr QColor bar{245, 245, 245};
inline constexpr QColor ink{98, 111, 111};
inline constexpr QColor quiet{161, 176, 176};
inline constexpr QColor accent{55, 171, 200};
inline constexpr QColor accentInk{20, 112, 136};         // the accent where it is read: titles of buttons, the focus
inline constexpr QColor hint{108, 120, 120};             // what an empty field shows
inline constexpr QColor red{192, 72, 72};                // behind "Delete"
inline constexpr QColor redInk{176, 60, 60};             // the red where it is read: titles of buttons that destroy
inline constexpr QColor pressedRed{170, 60, 60};         // while it is pressed
inline constexpr QColor pressedVeil{161, 176, 176, 50};  // over what is pressed or selected

}  // namespace platform::palette
