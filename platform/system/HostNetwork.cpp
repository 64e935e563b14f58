#include "platform/system/HostNetwork.h"

#include <QMetaMethod>
#include <QPointer>
#include <mutex>
#include <utility>

#include "platform/network/Routes.h"
#include "platform/system/HostLookup.h"
#include "platform/system/RouteMonitor.h"

namespace platform {

// Posts work from other threads to the main thread, until the owner closes it.
class Mailbox {
public:
    explicit Mailbox(QObject& owner) : owner_(&owner) {}

    void post(std::function<void()> work) {
        const std::lock_guard guard(lock_);
        if (owner_) QMetaObject::invokeMethod(owner_, std::move(work), Qt::QueuedConnection);
    }
    void close() {
        const std::lock_guard guard(lock_);
        owner_ = nullptr;
    }

private:
    std::mutex lock_;
    QObject* owner_;
};

HostNetwork::HostNetwork(QObject* parent) : Network(parent), mailbox_(std::make_shared<Mailbox>(*this)) {}

HostNetwork::~HostNetwork() {
    mailbox_->close();
}

std::optional<std::uint32_t> HostNetwork::flagsForAddress(const HostAddress& address) {
    using enum RouteAnswer::Kind;
    const RouteAnswer answer = address == HostAddress::anyIPv4() ? defaultRoute() : routeTo(address);
    if (answer.kind == unknown) return {};
    if (answer.kind == noRoute) return 0;
    std::uint32_t flags = reachability::reachable;
    // A default route does not make link-local addresses direct, even without a gateway.
    const bool isOnLink = !address.isLinkLocal() || answer.route.prefixLength > 0;
    if (!answer.route.hasGateway && isOnLink) flags |= reachability::isDirect;
    if (isCellular(answer.route.device)) flags |= reachability::isWWAN;
    return flags;
}

void HostNetwork::resolveHostName(const QString& name, QObject& receiver, Resolved resolved) {
    // The QPointer is only passed through the resolver thread; it is read on the main thread.
    auto tell = [receiver = QPointer(&receiver), resolved = std::move(resolved)](const QList<HostAddress>& addresses) {
        if (receiver) resolved(addresses);
    };
    lookUpHost(name, [mailbox = mailbox_, tell = std::move(tell)](const QList<HostAddress>& addresses) {
        mailbox->post([tell, addresses] { tell(addresses); });
    });
}

bool HostNetwork::isWatched() const {
    return monitor_ && monitor_->isRunning();
}

void HostNetwork::connectNotify(const QMetaMethod& signal) {
    if (signal != QMetaMethod::fromSignal(&Network::changed) || isWatched()) return;
    monitor_ = std::make_unique<RouteMonitor>([this] { Q_EMIT changed(); });
}

}  // namespace platform
