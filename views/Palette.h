#pragma once

#include "platform/ui/drawing/Palette.h"

namespace views::palette {

// The colours of the controls, and those that only views use.
using platform::palette::accent;  // switches that are on, the recommended button
using platform::palette::accentInk;
using platform::palette::bar;
using platform::palette::hint;
using platform::palette::ink;    // texts
using platform::palette::quiet;  // titles, footer bands, idle icons

inline constexpr QColor faintInk{134, 142, 142};     // the rule cell's small label
inline constexpr QColor panelShadow{170, 170, 170};  // the platform's light grey

}  // namespace views::palette
