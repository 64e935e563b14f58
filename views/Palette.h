#pragma once

#include <QColor>

namespace views::palette {

// Every colour of the app.
inline const QColor bar{245, 245, 245};
inline const QColor ink{98, 111, 111};           // texts
inline const QColor faintInk{134, 142, 142};     // the rule cell's small label
inline const QColor quiet{161, 176, 176};        // titles, footer bands, idle icons
inline const QColor accent{55, 171, 200};        // switches that are on, the one button that matters
inline const QColor panelShadow{170, 170, 170};  // the platform's light grey

}  // namespace views::palette
