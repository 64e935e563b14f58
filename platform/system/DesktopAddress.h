#pragma once

class QUrl;

namespace platform {

// An address as the desktop's programs understand it. The phone writes "mailto://person@host"; what follows the scheme
// of a mail address is the person elsewhere, and "//person" is nobody.
QUrl desktopAddress(const QUrl& address);

// Hands an address to the desktop's program for it; where there is none, nothing happens.
void openOnDesktop(const QUrl& address);

}  // namespace platform
