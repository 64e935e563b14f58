#include "platform/system/DesktopNotification.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <QDBusConnection>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QVariantMap>

using platform::DesktopNotification;

namespace {

constexpr int patience = 10'000;  // milliseconds

// What a desktop does with messages: it owns the name and writes down what it is told.
class Desktop : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    QStringList told;

public Q_SLOTS:
    uint Notify(const QString& application, uint replaced, const QString& icon, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap& hints, int timeout) {
        told = {application,
                QString::number(replaced),
                icon,
                summary,
                body,
                actions.join(u' '),
                hints.value(QStringLiteral("desktop-entry")).toString(),
                QString::number(timeout)};
        return 1;
    }
};

// A session bus of the test's own.
class DesktopNotificationTest : public testing::Test {
protected:
    void SetUp() override {
        address_ = QStringLiteral("unix:path=") + folder_.filePath(QStringLiteral("bus"));
        bus_.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                    QStringLiteral("--address=") + address_});
        ASSERT_TRUE(bus_.waitForReadyRead(patience)) << bus_.readAllStandardError().toStdString();
    }

    void TearDown() override {
        bus_.kill();
        bus_.waitForFinished(patience);
    }

    QTemporaryDir folder_;
    QString address_;
    QProcess bus_;
};

TEST_F(DesktopNotificationTest, ReachesTheDesktopOfTheSession) {
    QDBusConnection session = QDBusConnection::connectToBus(address_, QStringLiteral("desktop"));
    Desktop desktop;
    ASSERT_TRUE(session.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &desktop,
                                       QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(session.registerService(QStringLiteral("org.freedesktop.Notifications")));
    QCoreApplication::setApplicationName(QStringLiteral("Vexmor"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.urmeld.Vexmor"));
    const QString entry = QGuiApplication::desktopFileName();

    // Named outright, and where a session keeps its bus otherwise.
    for (const bool isNamed : {true, false}) {
        SCOPED_TRACE(isNamed);
        desktop.told.clear();
        isNamed ? qputenv("DBUS_SESSION_BUS_ADDRESS", address_.toLocal8Bit()) : qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("XDG_RUNTIME_DIR", isNamed ? "/nonexistent" : folder_.path().toLocal8Bit());
        DesktopNotification notification;
        notification.post(QStringLiteral("Summary"), QStringLiteral("a < b & c"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !desktop.told.isEmpty(); }, patience));
        EXPECT_EQ(desktop.told,
                  (QStringList{QStringLiteral("Vexmor"), QStringLiteral("0"), entry, QStringLiteral("Summary"),
                               QStringLiteral("a &lt; b &amp; c"), QString(), entry, QStringLiteral("-1")}));
    }
    QDBusConnection::disconnectFromBus(QStringLiteral("desktop"));
}

// The last bus answers nothing: who waited for it would reach the test's time limit.
TEST_F(DesktopNotificationTest, WithoutABusNothingHappens) {
    ::kill(static_cast<pid_t>(bus_.processId()), SIGSTOP);
    const QByteArray addresses[] = {"unix:path=/nonexistent/bus", "nonsense", "unix:path=/dev/null",
                                    address_.toLocal8Bit()};
    for (const QByteArray& address : addresses) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        testing::internal::CaptureStderr();
        {
            DesktopNotification notification;
            notification.post(QStringLiteral("Summary"), QStringLiteral("body"));
            QCoreApplication::processEvents();
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << address.data();
    }
}

}  // namespace

#include "desktop_notification_test.moc"
