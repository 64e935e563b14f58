// The documentation viewer with the real web engine, against a web server of its own on the loopback interface.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <array>
#include <functional>

#include "platform/ui/controls/ImageButton.h"
#include "screens/settings/VxmWebViewController.h"
#include "support/TestDevice.h"

namespace {

constexpr int patience = 15000;  // ms; what is awaited takes a fraction of a second
constexpr int quietTime = 150;   // ms in which something that must not happen would have happened

constexpr auto firstPage = "/Vexmor/moreInfo/firewall.html";
const QByteArray support = VEXMOR_SUPPORT_ADDRESS;
const QByteArray supportMail =
    "mailto://" + support +
    "?subject=Vexmor%20Help&body=Please%20include%20the%20following%20information%20in%20your%20eMail:%3Cbr%3EiPhone%20"
    "firmware%20version:%20%3Cbr%3EiPhone%20model:%20%3Cbr%3EApp%20which%20caused%20a%20Problem:%3Cbr%3EAlso,%20please%"
    "20read%20the%20Troubleshooting%20section%20before%20emailing%20me.%20It%20has%20solutions%20for%20the%20most%20"
    "common%20problems!";

// What is answered ends where the connection does.
QByteArray answer(const QByteArray& statusAndHeaders, const QByteArray& body) {
    return "HTTP/1.1 " + statusAndHeaders + "\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n" +
           "<!DOCTYPE html><body style='margin:0;background:lime'>" + body;
}

QByteArray page(const QByteArray& body) {
    return answer("200 OK", body);
}

// A link in a row of its own.
constexpr int linkHeight = 40;
const QColor linkColor = Qt::yellow;
QByteArray anchor(const QByteArray& address, const QByteArray& attributes = {}) {
    return "<a style='display:block;height:40px;background:yellow' href='" + address + "' " + attributes + ">" +
           address + "</a>";
}

// Answers each path with fixed bytes. Bytes without an end keep the load going until the other side gives up.
class WebServer : public QTcpServer {
public:
    WebServer() {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = nextPendingConnection()) serve(socket);
        });
        listen(QHostAddress::LocalHost);
    }

    QString host() const { return QStringLiteral("127.0.0.1:%1").arg(serverPort()); }
    void forgetRequests() { seen_.clear(); }
    int requests(const QByteArray& path) const { return int(seen_.count(path)); }

    QHash<QByteArray, QByteArray> answers;
    int abandoned = 0;  // loads that the other side gave up

private:
    void serve(QTcpSocket* socket) {
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            if (!socket->peek(1 << 16).contains("\r\n\r\n")) return;
            const QByteArray path = socket->readAll().split(' ').value(1);
            seen_.append(path);
            const QByteArray bytes = answers.value(path, answer("404 Not Found", "nothing"));
            socket->write(bytes);
            if (bytes.contains("endless")) {
                connect(socket, &QTcpSocket::disconnected, this, [this] { ++abandoned; });
            } else {
                socket->disconnectFromHost();
            }
        });
    }

    QList<QByteArray> seen_;
};

// What is handed to the desktop past the screen.
class DesktopRecorder : public QObject {
    Q_OBJECT
public:
    DesktopRecorder() {
        for (const char* scheme : schemes) QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "open");
    }
    ~DesktopRecorder() override {
        for (const char* scheme : schemes) QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    }

    QList<QByteArray> opened;

public Q_SLOTS:
    void open(const QUrl& address) { opened.append(address.toEncoded()); }

private:
    static constexpr std::array schemes{"mailto", "tel", "file", "x-app"};
};

struct WebViewTest : testing::Test {
    static void SetUpTestSuite() {
        if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");  // the engine's sandbox is not for root
        QCoreApplication::addLibraryPath(QStringLiteral(VEXMOR_MODULES));
    }
    void SetUp() override {
        device.device().documentationHost = server.host();
        device.device().openURL = [this](const QUrl& address) { opened.append(address.toEncoded()); };
        device.launch();
        device.tap(26, 20);
    }

    void open() {
        device.tapRow(u"Documentation");
        screen = qobject_cast<screens::VxmWebViewController*>(device.screen());
    }
    bool openFirstPage(const QByteArray& bytes) {
        server.answers[firstPage] = bytes;
        server.forgetRequests();
        open();
        EXPECT_TRUE(screen->theWebView()) << "the module is not where it is looked for";
        return arrivesAt(firstPage);
    }
    void leave() { device.tap(20, 20); }

    // Whether the page of this path has been requested, loaded and painted (so that it can be tapped).
    bool arrivesAt(const QByteArray& path, int times = 1) {
        return QTest::qWaitFor([&] { return server.requests(path) >= times && isPainted(); }, patience);
    }

    // The pages of these tests are green all over, as nothing else is.
    bool isPainted() { return colorAt(2, bodyHeight - 2) == Qt::green; }
    QColor colorAt(int x, int y) { return screen->theWebView()->grab().toImage().pixelColor(x, y); }

    void tapLink(int row = 0) { device.tap(160, 40 + linkHeight * row + linkHeight / 2); }
    bool isFloatingButtonShown() { return screen->backButton()->isVisible(); }
    bool floatingButtonComesToBe(bool shown) {
        return QTest::qWaitFor([&] { return isFloatingButtonShown() == shown; }, patience);
    }
    bool goesOn() {
        tapLink();
        return floatingButtonComesToBe(true);
    }

    static constexpr int bodyHeight = 508;
    WebServer server;
    QList<QByteArray> opened;
    TestDevice device;
    screens::VxmWebViewController* screen = nullptr;
};

// The first test: an engine that runs already asks no more.
TEST_F(WebViewTest, RootWhoHasNoSandboxSeesNoPage) {
    if (geteuid() != 0) GTEST_SKIP() << "is about root";
    const QByteArray given = qgetenv("QTWEBENGINE_DISABLE_SANDBOX");
    qunsetenv("QTWEBENGINE_DISABLE_SANDBOX");
    open();
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", given);
    EXPECT_FALSE(screen->theWebView());
    EXPECT_FALSE(isFloatingButtonShown());
    EXPECT_FALSE(device.alert());
}

TEST_F(WebViewTest, FloatingButtonFollowsTheHistory) {
    server.answers["/Vexmor/moreInfo/second.html"] = page(anchor("/broken"));
    for (const char* address : {"second.html", "#below"}) {
        SCOPED_TRACE(address);
        ASSERT_TRUE(openFirstPage(page(anchor(address) + "<p id=below style='margin-top:2000px'>below")));
        EXPECT_FALSE(isFloatingButtonShown());
        ASSERT_TRUE(goesOn());
        device.tap(5 + 16, 40 + bodyHeight - 37 + 16);
        EXPECT_TRUE(floatingButtonComesToBe(false));
        QTest::qWait(quietTime);
        EXPECT_FALSE(isFloatingButtonShown());
        leave();
    }
}

TEST_F(WebViewTest, LinkThatAsksForAWindowOpensHereAndEveryAppearanceBeginsAgain) {
    server.answers["/other"] = page("other");
    ASSERT_TRUE(openFirstPage(page(anchor("/other", "target=_blank"))));
    ASSERT_TRUE(goesOn());
    EXPECT_TRUE(arrivesAt("/other"));
    device.navigation()->pushViewController(std::make_unique<platform::ViewController>(), true);
    device.navigation()->popViewController(true);
    EXPECT_TRUE(arrivesAt(firstPage, 2));
}

TEST_F(WebViewTest, OnlyTheSupportLinkItselfIsIntercepted) {
    const std::pair<QByteArray, bool> cases[] = {
        {"mailto:" + support, true},
        {"MailTo:" + support.left(1).toUpper() + support.mid(1), true},
        {"mailto:" + support + "?subject=Hello%20you", false},
        {"mailto:" + support + "?", false},
        {"mailto:" + support + ".org", false},
        {"mailto:no" + support, false},
    };
    QByteArray links;
    for (const auto& [address, isIntercepted] : cases) links += anchor(address);
    server.answers["/links"] = page(links);
    ASSERT_TRUE(openFirstPage(page(anchor("/links"))));
    ASSERT_TRUE(goesOn());
    ASSERT_TRUE(arrivesAt("/links"));

    int row = 0;
    for (const auto& [address, isIntercepted] : cases) {
        SCOPED_TRACE(address.toStdString());
        opened.clear();
        tapLink(row++);
        EXPECT_TRUE(QTest::qWaitFor([&] { return device.alert() || !opened.isEmpty(); }, patience));
        QTest::qWait(quietTime);
        EXPECT_EQ(device.alert() != nullptr, isIntercepted);
        EXPECT_EQ(opened, isIntercepted ? QList<QByteArray>() : QList<QByteArray>{address});
        EXPECT_TRUE(isFloatingButtonShown()) << "the page stays, and so does the way back";
        if (device.alert()) device.answer(1);
    }
}

// The page comes unencrypted: it may be anybody's. Nothing but a tap on a mail's link, above, reaches the desktop. A
// tap on something else is what the engine lets a script open programs for.
TEST_F(WebViewTest, APageStartsNoProgram) {
    server.answers["/to-mail"] = answer("302 Found\r\nLocation: mailto:a@vexmor.example", {});
    server.answers["/to-app"] = answer("302 Found\r\nLocation: x-app:redirect", {});
    server.answers["/frame"] = page(anchor("mailto:a@vexmor.example"));
    std::vector<QByteArray> pages{
        anchor("x-app:link"),
        anchor("x-app:window", "target=_blank"),
        anchor("tel:+15550100"),
        anchor("file:///etc/hostname"),
        anchor("javascript:location=%22x-app:javascript%22"),
        anchor("/to-mail"),
        anchor("/to-app"),
        anchor("mailto:a@vexmor.example", "onclick=\"location='mailto:b@vexmor.example';return false\""),
        "<iframe src=/frame width=320 height=300 frameborder=0></iframe>",
    };
    for (const char* script : {
             "location='mailto:a@vexmor.example'",
             "location='x-app:script'",
             "location='file:///etc/hostname'",
             "location='data:text/html,x'",
             "location='/to-mail'",
             "location='/to-app'",
             "location='javascript:open(`x-app:javascript`)'",
             "frame('mailto:a@vexmor.example'),frame('x-app:frame'),frame('file:///etc/hostname')",
             "frame('/to-mail'),frame('/to-app')",
             "open('mailto:a@vexmor.example'),open('x-app:window'),open('file:///etc/hostname')",
             "refresh('mailto:a@vexmor.example')",
             "refresh('x-app:refresh')",
             "document.forms[0].submit()",
             "mail.click(),mail.dispatchEvent(new MouseEvent('click',{bubbles:true}))",
         }) {
        pages.push_back(anchor(QByteArray("#"), "onclick=\"" + QByteArray(script) + "\"") +
                        "<a id=mail href=mailto:a@vexmor.example></a>"
                        "<form method=post action=mailto:a@vexmor.example></form>"
                        "<script>const add = html => document.body.insertAdjacentHTML('beforeend', html);"
                        "const frame = address => add(`<iframe hidden src=${address}></iframe>`);"
                        "const refresh = address => add(`<meta http-equiv=refresh content='0;url=${address}'>`);" +
                        script + "</script>");
    }
    for (const QByteArray& body : pages) {
        SCOPED_TRACE(body.toStdString());
        DesktopRecorder pastTheScreen;
        opened.clear();
        ASSERT_TRUE(openFirstPage(page(body)));
        ASSERT_TRUE(QTest::qWaitFor([&] { return colorAt(310, 2) == linkColor; }, patience));
        tapLink();
        QTest::qWait(quietTime);
        EXPECT_EQ((opened + pastTheScreen.opened).join(' ').toStdString(), "");
        leave();
    }
}

TEST_F(WebViewTest, ReminderLeadsToTheMailOrBackToThePage) {
    server.answers["/redirect"] = answer("302 Found\r\nLocation: mailto:" + support, {});
    server.answers["/frame"] = page(anchor("mailto:" + support));
    const QByteArray pages[] = {
        anchor("mailto:" + support),
        anchor("/redirect"),
        "<iframe src=/frame width=320 height=300 frameborder=0></iframe>",
        anchor("mailto:" + support, "target=_blank"),
    };
    for (const QByteArray& body : pages) {
        SCOPED_TRACE(body.toStdString());
        ASSERT_TRUE(openFirstPage(page(body)));
        ASSERT_TRUE(QTest::qWaitFor([&] { return colorAt(310, 2) == linkColor; }, patience));
        for (const bool sendsMail : {false, true}) {
            opened.clear();
            tapLink();
            ASSERT_TRUE(QTest::qWaitFor([&] { return device.alert() != nullptr; }, patience));
            EXPECT_EQ(device.alert()->title(), u"please read troubleshooting and FAQ first!");
            EXPECT_TRUE(opened.isEmpty());
            device.answer(sendsMail ? 0 : 1);
            EXPECT_EQ(opened, sendsMail ? QList<QByteArray>{supportMail} : QList<QByteArray>{});
            EXPECT_FALSE(device.alert());
        }
        EXPECT_EQ(server.requests(firstPage), 1);
        leave();
    }
}

TEST_F(WebViewTest, LeavingStopsTheLoad) {
    // A page that is gone stops by itself; one that is covered is still there.
    auto& screens = *device.navigation();
    const std::pair<int, std::function<void()>> ways[] = {
        {4, [&] { screens.pushViewController(std::make_unique<platform::ViewController>(), true); }},
        {2, [&] { leave(); }},
        {2, [&] { device.key(Qt::Key_Escape); }},
    };
    for (const auto& way : ways) {
        server.abandoned = 0;
        ASSERT_TRUE(openFirstPage(page("<p>endless")));
        EXPECT_EQ(server.abandoned, 0);
        way.second();
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.abandoned == 1 && screens.count() == way.first; }, patience));
        while (screens.count() > 2) screens.popViewController(true);
    }
}

TEST_F(WebViewTest, FailedLoadShowsNothing) {
    const QByteArray failures[] = {
        "", "\1\2\3 garbage \r\n\r\n", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n<p>less than promised",
        "HTTP/1.1 302 Found\r\nLocation: /Vexmor/moreInfo/firewall.html\r\n\r\n",  // a circle
    };
    for (const QByteArray& bytes : failures) {
        SCOPED_TRACE(bytes.toStdString());
        server.answers[firstPage] = bytes;
        open();
        QTest::qWait(4 * quietTime);
        EXPECT_FALSE(isFloatingButtonShown());
        EXPECT_FALSE(device.alert());
        EXPECT_TRUE(opened.isEmpty());
        leave();
    }

    server.answers["/broken"] = "this is not the web\r\n\r\n";
    server.answers["/second"] = page(anchor("/broken"));
    ASSERT_TRUE(openFirstPage(page(anchor("/second"))));
    ASSERT_TRUE(goesOn());
    tapLink();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.requests("/broken") == 1; }, patience));
    QTest::qWait(4 * quietTime);
    EXPECT_FALSE(isFloatingButtonShown()) << "the load has failed, though there is a page to go back to";
}

}  // namespace

#include "webview_test.moc"
