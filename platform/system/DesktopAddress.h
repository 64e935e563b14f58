#pragma once

class QUrl;

namespace platform {

// Converts an address to the form that desktop programs accept: the phone's "mailto://person@host" becomes
// "mailto:person@host". Other addresses are returned unchanged.
QUrl desktopAddress(const QUrl& address);

// Opens an address with the desktop's handler for its scheme; no effect without one.
void openOnDesktop(const QUrl& address);

}  // namespace platform
