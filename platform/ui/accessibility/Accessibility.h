#pragma once

namespace platform {

// Installs the accessible interfaces of switch, button, text field, alert, table and rows. Call before the first widget
// is created: Qt caches the interface of a widget on its first use. Further calls have no effect. Main thread.
void installAccessibility();

}  // namespace platform
