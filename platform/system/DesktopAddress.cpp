#include "platform/system/DesktopAddress.h"

#include <QDesktopServices>
#include <QUrl>

namespace platform {

QUrl desktopAddress(const QUrl& address) {
    if (address.scheme() != u"mailto" || address.authority().isEmpty()) return address;
    QUrl mail = address;
    mail.setAuthority(QString());
    mail.setPath(address.authority(QUrl::FullyEncoded) + address.path(QUrl::FullyEncoded), QUrl::TolerantMode);
    return mail;
}

void openOnDesktop(const QUrl& address) {
    QDesktopServices::openUrl(desktopAddress(address));
}

}  // namespace platform
