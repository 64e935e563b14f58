#pragma once

#include <QList>
#include <QString>
#include <functional>

#include "platform/system/HostAddress.h"

namespace platform {

// Looks a host name up as the system does (hosts file, name servers), in the background, and calls `found` once, on
// another thread, with no address when there is none; when the system cannot even be asked, on this one, at once.
void lookUpHost(const QString& name, std::function<void(const QList<HostAddress>& addresses)> found);

}  // namespace platform
