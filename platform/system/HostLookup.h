#pragma once

#include <QList>
#include <QString>
#include <functional>

#include "platform/network/HostAddress.h"

namespace platform {

// Resolves a host name with the system's resolver (hosts file, DNS) asynchronously. `found` is called exactly once, on
// another thread, with an empty list on failure. If the request cannot be queued, it is called before the function
// returns, on the calling thread.
void lookUpHost(const QString& name, std::function<void(const QList<HostAddress>& addresses)> found);

}  // namespace platform
