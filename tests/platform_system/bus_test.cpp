// What the app says over the buses: notifications to the engine on the system's, messages to a person on the session's.
#include <gtest/gtest.h>
#include <signal.h>

#include <QGuiApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "platform/system/DesktopNotification.h"
#include "platform/system/SystemNotifyCenter.h"

namespace {

using namespace Qt::StringLiterals;
using platform::DesktopNotification;

constexpr int patience = 10'000;  // milliseconds

// A real bus on a socket of its own, and a listener in another process that writes down what it hears.
struct BusTest : testing::Test {
    void SetUp() override {
        announceBus(address_.toLocal8Bit());
        startBus();
    }
    void TearDown() override { killBus(); }

    static void announceBus(const QByteArray& address) {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    }
    void startBus() {
        bus_.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s, u"--address="_s + address_});
        ASSERT_TRUE(bus_.waitForReadyRead(patience)) << bus_.readAllStandardError().toStdString();
        listener_.start(u"dbus-monitor"_s,
                        {u"--address"_s, address_, u"interface='com.urmeld.vxm'"_s, u"member='Notify'"_s});
        heard_.clear();
        ASSERT_TRUE(hears(u"NameLost"_s)) << "the listener has not become a monitor";
    }
    void killBus() {
        for (QProcess* process : {&bus_, &listener_}) {
            process->kill();
            process->waitForFinished(patience);
        }
    }
    void stallBus(bool stalls) const { ::kill(static_cast<pid_t>(bus_.processId()), stalls ? SIGSTOP : SIGCONT); }

    bool hears(const QString& text) {
        while (!heard_.contains(text) && listener_.waitForReadyRead(patience))
            heard_ += QString::fromUtf8(listener_.readAllStandardOutput());
        return heard_.contains(text);
    }
    // The members of the notifications heard so far.
    QString notifications() const {
        QStringList members;
        static const QRegularExpression line(
            u"^signal .* path=/com/urmeld/vxm; interface=com\\.urmeld\\.vxm; member=(\\w+)$"_s,
            QRegularExpression::MultilineOption);
        for (auto match = line.globalMatch(heard_); match.hasNext();) members.append(match.next().captured(1));
        return members.join(u' ');
    }
    void post(const char* member) { center_.post(std::string("com.urmeld.vxm.") + member); }

    QTemporaryDir folder_;
    QString address_ = u"unix:path="_s + folder_.filePath(u"bus"_s);
    QProcess bus_;
    QProcess listener_;
    QString heard_;
    platform::SystemNotifyCenter center_;
};

TEST_F(BusTest, NotificationsAreHeardOnceAndInOrder) {
    center_.post(store::hookLate);
    center_.post(store::reloadBoth);
    for (int round = 0; round < 10; ++round) post("again");
    post("last");
    ASSERT_TRUE(hears(u"member=last"_s));
    EXPECT_EQ(notifications(), u"hookLate reloadBoth "_s + u"again "_s.repeated(10) + u"last"_s);
}

// What terminates the app posts and is gone: the post must have left it, also where the bus had stalled.
TEST_F(BusTest, ANotificationOfAProcessThatQuitsAndDiesIsHeard) {
    for (const bool stalls : {false, true, false, true, false, true}) {
        heard_.clear();
        stallBus(stalls);
        QProcess process;
        process.start(QStringLiteral(POST_AND_DIE), {u"com.urmeld.vxm.dying"_s});
        ASSERT_TRUE(process.waitForReadyRead(patience));
        stallBus(false);
        ASSERT_TRUE(process.waitForFinished(patience));
        EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
        EXPECT_TRUE(hears(u"member=dying"_s));
    }
}

// A bus that takes connections and answers nothing: the posts do not wait for it (the test's time limit would tell),
// and it has them when it goes on.
TEST_F(BusTest, AStalledBusHasTheNotificationsWhenItGoesOn) {
    stallBus(true);
    post("first");
    post("second");
    stallBus(false);
    post("third");
    ASSERT_TRUE(hears(u"member=third"_s));
    EXPECT_EQ(notifications(), u"first second third"_s);
}

TEST_F(BusTest, TheBusIsFoundAnewForEachNotification) {
    post("before");
    EXPECT_TRUE(hears(u"member=before"_s));
    killBus();
    post("between");
    startBus();
    post("after");
    ASSERT_TRUE(hears(u"member=after"_s));
    EXPECT_EQ(notifications(), u"after"_s);
}

TEST_F(BusTest, MessagesReachTheDesktopOfTheSession) {
    QCoreApplication::setApplicationName(u"Vexmor"_s);
    QGuiApplication::setDesktopFileName(u"com.urmeld.Vexmor"_s);
    // Named outright, and where a session keeps its bus otherwise.
    for (const bool isNamed : {true, false}) {
        heard_.clear();
        if (!isNamed) qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("XDG_RUNTIME_DIR", isNamed ? "/nonexistent" : folder_.path().toLocal8Bit());
        DesktopNotification notification;
        notification.post(u"Summary"_s, u"a < b & c"_s);
        EXPECT_TRUE(hears(u"int32 -1"_s));
        const QString entry = QGuiApplication::desktopFileName();
        EXPECT_TRUE(heard_.simplified().contains(
            u"path=/org/freedesktop/Notifications; interface=org.freedesktop.Notifications; member=Notify "
            "string \"Vexmor\" uint32 0 string \"%1\" string \"Summary\" string \"a &lt; b &amp; c\" array [ ] "
            "array [ dict entry( string \"desktop-entry\" variant string \"%1\" ) ] int32 -1"_s.arg(entry)))
            << heard_.toStdString();
    }
}

// The last bus answers nothing: who waited for it would reach the test's time limit.
TEST_F(BusTest, WithoutABusNothingHappens) {
    stallBus(true);
    for (const QByteArray& address : {QByteArray("unix:path=/nonexistent/bus"), QByteArray("nonsense"),
                                      QByteArray("unix:path=/dev/null"), address_.toLocal8Bit()}) {
        announceBus(address);
        testing::internal::CaptureStderr();
        {
            DesktopNotification notification;
            notification.post(u"Summary"_s, u"body"_s);
            post("unheard");
            QCoreApplication::processEvents();
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << address.data();
    }
}

}  // namespace
