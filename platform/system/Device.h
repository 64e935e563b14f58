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

// What the app is given once, at start, by whoever runs it: the phone that it lives on. A plain value; what it points
// to outlives the app.
struct Device {
    std::filesystem::path root = "/";                  // every path of the product lies below it
    store::NotifyCenter* notifyCenter = nullptr;       // tells the engine
    ApplicationList* applicationList = nullptr;        // what is installed
    Network* network = nullptr;                        // what can be reached
    std::function<void(const QUrl& address)> openURL;  // hands an address to the system
    // Tells the person something that is not the app's own business; empty where there is nobody to tell.
    std::function<void(const QString& summary, const QString& body)> notify;
    QString model = QStringLiteral("iPhone");
    QString documentationHost;  // with a port, if any; empty stands for the one that the app was built with
    QSize screen{320, 568};     // points, the system's 20-point status bar included
};

}  // namespace platform
