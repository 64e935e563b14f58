#include "platform/system/SystemNotifyCenter.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <fstream>

using platform::SystemNotifyCenter;

namespace {

constexpr int patience = 10'000;  // milliseconds

// A real bus on a socket of its own, and a listener in another process that writes down what it hears.
class SystemNotifyCenterTest : public testing::Test {
protected:
    void SetUp() override {
        std::ofstream(folder_.filePath(QStringLiteral("bus.conf")).toStdString())
            << "<busconfig><type>system</type><listen>" << address() << "</listen>"
            << "<policy context='default'><allow user='*'/><allow own='*'/><allow send_type='signal'/>"
            << "<allow send_destination='*' eavesdrop='true'/><allow receive_sender='*' eavesdrop='true'/>"
            << "</policy></busconfig>";
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", QByteArray::fromStdString(address()));
    }

    std::string address() const { return "unix:path=" + folder_.filePath(QStringLiteral("bus")).toStdString(); }

    void startBus() {
        bus_.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                    QStringLiteral("--config-file=") + folder_.filePath(QStringLiteral("bus.conf"))});
        ASSERT_TRUE(bus_.waitForReadyRead(patience)) << bus_.readAllStandardError().toStdString();
        listener_.start(QStringLiteral("dbus-monitor"),
                        {QStringLiteral("--address"), QString::fromStdString(address()), QStringLiteral("--profile"),
                         QStringLiteral("type='signal',path='/com/urmeld/vxm'")});
        heard_.clear();
        ASSERT_TRUE(hears(QStringLiteral("NameLost"))) << "the listener has not become a monitor";
    }

    void killBus() {
        for (QProcess* process : {&bus_, &listener_}) {
            process->kill();
            process->waitForFinished(patience);
        }
    }

    void TearDown() override { killBus(); }

    bool hears(const QString& text) {
        while (!heard_.contains(text) && listener_.waitForReadyRead(patience))
            heard_ += QString::fromUtf8(listener_.readAllStandardOutput());
        return heard_.contains(text);
    }

    // The members of the notifications heard so far.
    QStringList notifications() const {
        QStringList members;
        static const QRegularExpression line(QStringLiteral("^sig.*/com/urmeld/vxm\\s+com\\.urmeld\\.vxm\\s+(\\w+)$"),
                                             QRegularExpression::MultilineOption);
        for (auto match = line.globalMatch(heard_); match.hasNext();) members.append(match.next().captured(1));
        return members;
    }

    QTemporaryDir folder_;
    QProcess bus_;
    QProcess listener_;
    QString heard_;
    SystemNotifyCenter center_;
};

}  // namespace

TEST_F(SystemNotifyCenterTest, PostsAreHeardOnceAndInOrder) {
    startBus();
    QStringList posted;
    for (int round = 0; round < 10; ++round) {
        center_.post(store::hookLate);
        center_.post(store::reloadBoth);
        posted << QStringLiteral("hookLate") << QStringLiteral("reloadBoth");
    }
    center_.post("com.urmeld.vxm.last");
    posted << QStringLiteral("last");
    ASSERT_TRUE(hears(QStringLiteral("last")));
    EXPECT_EQ(notifications(), posted);
}

// What terminates the app posts and is gone: the post must have left it, also where the bus had stalled.
TEST_F(SystemNotifyCenterTest, APostOfAProcessThatQuitsAndDiesIsHeard) {
    startBus();
    for (int round = 1; round <= 6; ++round) {
        const QString name = QStringLiteral("round%1").arg(round);
        const bool stalls = round % 2 == 0;
        if (stalls) ::kill(bus_.processId(), SIGSTOP);
        QProcess process;
        process.start(QStringLiteral(POST_AND_DIE), {QStringLiteral("com.urmeld.vxm.") + name});
        ASSERT_TRUE(process.waitForReadyRead(patience));
        if (stalls) ::kill(bus_.processId(), SIGCONT);
        ASSERT_TRUE(process.waitForFinished(patience));
        EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
        EXPECT_TRUE(hears(name));
    }
}

TEST_F(SystemNotifyCenterTest, WithoutABusNothingHappens) {
    const char* const addresses[] = {"unix:path=/nonexistent/bus", "nonsense", "unix:path=/dev/null"};
    for (const char* address : addresses) {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
        testing::internal::CaptureStderr();
        center_.post(store::reloadBoth);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << address;
    }
}

TEST_F(SystemNotifyCenterTest, TheBusIsFoundAnewForEachPost) {
    startBus();
    center_.post("com.urmeld.vxm.before");
    EXPECT_TRUE(hears(QStringLiteral("before")));
    killBus();
    center_.post("com.urmeld.vxm.between");
    startBus();
    center_.post("com.urmeld.vxm.after");
    EXPECT_TRUE(hears(QStringLiteral("after")));
    EXPECT_EQ(notifications(), QStringList{QStringLiteral("after")});
}

// A bus that takes connections and answers nothing: the posts do not wait for it (the test's time limit would tell),
// and it has them when it goes on.
TEST_F(SystemNotifyCenterTest, AStalledBusHasThePostsWhenItGoesOn) {
    startBus();
    ::kill(bus_.processId(), SIGSTOP);
    center_.post("com.urmeld.vxm.first");
    center_.post("com.urmeld.vxm.second");
    ::kill(bus_.processId(), SIGCONT);
    center_.post("com.urmeld.vxm.third");
    ASSERT_TRUE(hears(QStringLiteral("third")));
    EXPECT_EQ(notifications(), QStringLiteral("first second third").split(u' '));
}
