#pragma once

#include <QSize>
#include <QString>
#include <filesystem>
#include <functional>

class QUrl;

namespace store {
class NotifyCenter;
}

namespace platform {

class ApplicationList;
class Network;

// The services of the device, passed to the app once, at start. A plain value; the objects it points to must outlive
// the app.
struct Device {
    std::filesystem::path root = "/";                  // every path of the product is below it
    store::NotifyCenter* notifyCenter = nullptr;       // tells the engine
    ApplicationList* applicationList = nullptr;        // what is installed
    Network* network = nullptr;                        // what can be reached
    std::function<void(const QUrl& address)> openURL;  // hands an address to the system
    // Shows the user a message outside the app's window; empty where that is not possible.
    std::function<void(const QString& summary, const QString& body)> notify;
    QString model = QStringLiteral("iPhone");
    QString documentationHost;  // with an optional port; empty: the host configured at build time
    QSize screen{320, 568};     // points, the system's 20-point status bar included
};

}  // namespace platform
