// The documentation viewer with the real web engine, against a web server of its own on the loopback interface.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QApplication>
#include <QDesktopServices>
#include <QHash>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QUrl>
#include <array>
#include <vector>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/navigation/NavigationController.h"
#include "resources/Resources.h"
#include "screens/settings/VxmWebViewController.h"
#include "views/Chrome.h"

namespace {

constexpr int patience = 15000;  // ms; what is awaited takes a fraction of a second
constexpr int quietTime = 150;   // ms in which something that must not happen would have happened

constexpr auto firstPage = "/Vexmor/moreInfo/firewall.html";
constexpr auto supportMail =
    "mailto://"
    "support@vexmor.example?subject=Vexmor%20Help&body=Please%20include%20the%20following%20information%20in%20"
    "your%20eMail:%3Cbr%3EiPhone%20firmware%20version:%20%3Cbr%3EiPhone%20model:%20%3Cbr%3EApp%20which%20caused%20a%20"
    "Problem:%3Cbr%3EAlso,%20please%20read%20the%20Troubleshooting%20section%20before%20emailing%20me.%20It%20has%20"
    "solutions%20for%20the%20most%20common%20problems!";

// What is answered ends where the connection does.
QByteArray answer(const QByteArray& statusAndHeaders, const QByteArray& body) {
    return "HTTP/1.1 " + statusAndHeaders + "\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n" +
           "<!DOCTYPE html><body style='margin:0;background:lime'>" + body;
}

// A link in a row of its own.
constexpr int linkHeight = 40;
const QColor linkColor = Qt::yellow;
QByteArray link(const QByteArray& address, const QByteArray& attributes = {}) {
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

class WebViewTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");  // the engine's sandbox is not for root
        QCoreApplication::addLibraryPath(QStringLiteral(VEXMOR_MODULES));
        resources::initialize();
        platform::AnimationClock::setInstant(true);
    }
    static void TearDownTestSuite() { platform::AnimationClock::setInstant(false); }

    void push(const QString& host) {
        window.resize(chrome.windowSize());
        window.show();
        window.activateWindow();
        auto pushed = std::make_unique<screens::VxmWebViewController>(
            chrome, host, QStringLiteral("support@vexmor.example"),
            [this](const QUrl& address) { opened.append(address.toEncoded()); });
        screen = pushed.get();
        window.pushViewController(std::move(pushed), true);
    }

    void open(const QString& host) {
        push(host);
        ASSERT_TRUE(screen->theWebView()) << "the module is not where it is looked for";
    }

    bool openFirstPage(const QByteArray& bytes) {
        server.answers[firstPage] = bytes;
        server.forgetRequests();
        open(server.host());
        return arrivesAt(firstPage);
    }

    // Whether the page of this path has been requested, loaded and painted (so that it can be tapped).
    bool arrivesAt(const QByteArray& path, int times = 1) {
        return QTest::qWaitFor([&] { return server.requests(path) >= times && isPainted(); }, patience);
    }

    // The pages of these tests are green all over, as nothing else is.
    bool isPainted() { return colorAt(2, chrome.bodyHeight() - 2) == Qt::green; }
    QColor colorAt(int x, int y) { return screen->theWebView()->grab().toImage().pixelColor(x, y); }

    void tapAt(int x, int y) {
        QPoint point(x, y);
        QWidget* child = window.childAt(point);
        ASSERT_TRUE(child);
        QTest::mouseClick(child, Qt::LeftButton, {}, child->mapFrom(&window, point));
    }
    void tapLink(int row = 0) { tapAt(160, 40 + linkHeight * row + linkHeight / 2); }
    void tapFloatingButton() { tapAt(5 + 16, 40 + chrome.bodyHeight() - 37 + 16); }

    bool isFloatingButtonShown() { return screen->backButton()->isVisible(); }
    bool floatingButtonComesToBe(bool shown) {
        return QTest::qWaitFor([&] { return isFloatingButtonShown() == shown; }, patience);
    }

    platform::AlertView* alert() {
        const auto shown = platform::AlertView::shownIn(&window);
        return shown.isEmpty() ? nullptr : shown.last();
    }

    views::Chrome chrome{false, QStringLiteral("iPhone"), {320, 568}};
    WebServer server;
    QList<QByteArray> opened;
    platform::NavigationController window{std::make_unique<platform::ViewController>()};
    screens::VxmWebViewController* screen = nullptr;
};

// The first test: an engine that runs already asks no more.
TEST_F(WebViewTest, RootWhoHasNoSandboxSeesNoPage) {
    if (geteuid() != 0) GTEST_SKIP() << "is about root";
    const QByteArray given = qgetenv("QTWEBENGINE_DISABLE_SANDBOX");
    qunsetenv("QTWEBENGINE_DISABLE_SANDBOX");
    push(server.host());
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", given);
    EXPECT_FALSE(screen->theWebView());
    EXPECT_FALSE(isFloatingButtonShown());
    EXPECT_FALSE(alert());
    window.popViewController(true);
    EXPECT_EQ(window.count(), 1);
}

TEST_F(WebViewTest, FloatingButtonFollowsTheHistory) {
    server.answers["/Vexmor/moreInfo/second.html"] = answer("200 OK", link("/broken"));
    server.answers["/broken"] = "this is not the web\r\n\r\n";
    for (const char* address : {"second.html", "#below"}) {
        SCOPED_TRACE(address);
        ASSERT_TRUE(openFirstPage(answer("200 OK", link(address) + "<p id=below style='margin-top:2000px'>below")));
        EXPECT_FALSE(isFloatingButtonShown());
        tapLink();
        ASSERT_TRUE(floatingButtonComesToBe(true));
        tapFloatingButton();
        EXPECT_TRUE(floatingButtonComesToBe(false));
        QTest::qWait(quietTime);
        EXPECT_FALSE(isFloatingButtonShown());
        window.popViewController(true);
    }
}

TEST_F(WebViewTest, LinkThatAsksForAWindowOpensHere) {
    server.answers["/other"] = answer("200 OK", "other");
    ASSERT_TRUE(openFirstPage(answer("200 OK", link("/other", "target=_blank"))));
    tapLink();
    EXPECT_TRUE(arrivesAt("/other"));
    EXPECT_TRUE(floatingButtonComesToBe(true));
}

TEST_F(WebViewTest, OnlyTheSupportLinkItselfIsIntercepted) {
    const struct {
        const char* link;
        const char* opened;  // what the system is given, nullptr where the reminder comes instead
    } cases[] = {
        {"mailto:support@vexmor.example", nullptr},
        {"MailTo:SUPPORT@Vexmor.Example", nullptr},
        {"mailto:support@vexmor.example?subject=Hello%20you", "mailto:support@vexmor.example?subject=Hello%20you"},
        {"mailto:support@vexmor.example?", "mailto:support@vexmor.example?"},
        {"mailto:support@vexmor.example.org", "mailto:support@vexmor.example.org"},
        {"mailto:someone@vexmor.example", "mailto:someone@vexmor.example"},
    };
    QByteArray links;
    for (const auto& test : cases) links += link(test.link);
    server.answers["/links"] = answer("200 OK", links);
    ASSERT_TRUE(openFirstPage(answer("200 OK", link("/links"))));
    tapLink();
    ASSERT_TRUE(floatingButtonComesToBe(true));
    ASSERT_TRUE(arrivesAt("/links"));

    for (std::size_t row = 0; row < std::size(cases); ++row) {
        SCOPED_TRACE(cases[row].link);
        const char* const expected = cases[row].opened;
        opened.clear();
        tapLink(int(row));
        EXPECT_TRUE(QTest::qWaitFor([&] { return alert() || !opened.isEmpty(); }, patience));
        QTest::qWait(quietTime);
        EXPECT_EQ(alert() == nullptr, expected != nullptr);
        EXPECT_EQ(opened, expected ? QList<QByteArray>{expected} : QList<QByteArray>{});
        EXPECT_TRUE(isFloatingButtonShown()) << "the page stays, and so does the way back";
        if (alert()) alert()->dismissWithClickedButtonIndex(1);
    }
}

// The page comes unencrypted: it may be anybody's. Nothing but a tap on a mail's link, above, reaches the desktop. A
// tap on something else is what the engine lets a script open programs for.
TEST_F(WebViewTest, APageStartsNoProgram) {
    server.answers["/to-mail"] = answer("302 Found\r\nLocation: mailto:a@vexmor.example", {});
    server.answers["/to-app"] = answer("302 Found\r\nLocation: x-app:redirect", {});
    server.answers["/frame"] = answer("200 OK", link("mailto:a@vexmor.example"));
    std::vector<QByteArray> pages{
        link("x-app:link"),
        link("x-app:window", "target=_blank"),
        link("tel:+15550100"),
        link("file:///etc/hostname"),
        link("javascript:location=%22x-app:javascript%22"),
        link("/to-mail"),
        link("/to-app"),
        link("mailto:a@vexmor.example", "onclick=\"location='mailto:b@vexmor.example';return false\""),
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
        pages.push_back(link(QByteArray("#"), "onclick=\"" + QByteArray(script) + "\"") +
                        "<a id=mail href=mailto:a@vexmor.example></a>"
                        "<form method=post action=mailto:a@vexmor.example></form>"
                        "<script>const add = html => document.body.insertAdjacentHTML('beforeend', html);"
                        "const frame = address => add(`<iframe hidden src=${address}></iframe>`);"
                        "const refresh = address => add(`<meta http-equiv=refresh content='0;url=${address}'>`);" +
                        script + "</script>");
    }
    for (const QByteArray& page : pages) {
        SCOPED_TRACE(page.toStdString());
        DesktopRecorder pastTheScreen;
        opened.clear();
        ASSERT_TRUE(openFirstPage(answer("200 OK", page)));
        ASSERT_TRUE(QTest::qWaitFor([&] { return colorAt(310, 2) == linkColor; }, patience));
        tapLink();
        QTest::qWait(quietTime);
        EXPECT_EQ((opened + pastTheScreen.opened).join(' ').toStdString(), "");
        window.popViewController(true);
    }
}

TEST_F(WebViewTest, SupportLinkIsInterceptedHoweverItIsReached) {
    server.answers["/redirect"] = answer("302 Found\r\nLocation: mailto:Support@vexmor.example", {});
    server.answers["/frame"] = answer("200 OK", link("mailto:support@vexmor.example"));
    const QByteArray pages[] = {
        answer("200 OK", link("/redirect")),
        answer("200 OK", "<iframe src=/frame width=320 height=300 frameborder=0></iframe>"),
        answer("200 OK", link("mailto:support@vexmor.example", "target=_blank")),
    };
    for (const QByteArray& page : pages) {
        SCOPED_TRACE(page.toStdString());
        ASSERT_TRUE(openFirstPage(page));
        ASSERT_TRUE(QTest::qWaitFor([&] { return colorAt(310, 2) == linkColor; }, patience));
        tapLink();
        EXPECT_TRUE(QTest::qWaitFor([&] { return alert() != nullptr; }, patience));
        EXPECT_TRUE(opened.isEmpty());
        if (alert()) alert()->dismissWithClickedButtonIndex(1);
        window.popViewController(true);
    }
}

TEST_F(WebViewTest, ReminderLeadsToTheMailOrBackToThePage) {
    ASSERT_TRUE(openFirstPage(answer("200 OK", link("mailto:Support@vexmor.example"))));
    for (const bool sendsMail : {false, true}) {
        tapLink();
        ASSERT_TRUE(QTest::qWaitFor([&] { return alert() != nullptr; }, patience));
        EXPECT_EQ(alert()->title(), QStringLiteral("please read troubleshooting and FAQ first!"));
        QTest::mouseClick(alert()->button(sendsMail ? 0 : 1), Qt::LeftButton);
        EXPECT_EQ(opened, sendsMail ? QList<QByteArray>{supportMail} : QList<QByteArray>{});
        QTest::qWait(quietTime);
        EXPECT_FALSE(alert());
    }
    EXPECT_EQ(server.requests(firstPage), 1);
}

TEST_F(WebViewTest, LeavingStopsTheLoad) {
    const QByteArray endless = answer("200 OK", "<p>endless");
    enum class Way { covered, popped, escaped };
    for (const Way way : {Way::covered, Way::popped, Way::escaped}) {
        SCOPED_TRACE(int(way));
        server.abandoned = 0;
        ASSERT_TRUE(openFirstPage(endless));
        EXPECT_EQ(server.abandoned, 0);
        if (way == Way::covered) {
            window.pushViewController(std::make_unique<platform::ViewController>(), true);
        } else if (way == Way::popped) {
            window.popViewController(true);
        } else {
            ASSERT_TRUE(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        }
        // A page that is gone stops by itself; one that is covered is still there.
        const int left = way == Way::covered ? 3 : 1;
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.abandoned == 1 && window.count() == left; }, patience));
        while (window.count() > 1) window.popViewController(true);
    }
}

TEST_F(WebViewTest, EveryAppearanceLoadsThePageAgain) {
    server.answers["/second"] = answer("200 OK", "second");
    ASSERT_TRUE(openFirstPage(answer("200 OK", link("/second"))));
    tapLink();
    ASSERT_TRUE(floatingButtonComesToBe(true));
    window.pushViewController(std::make_unique<platform::ViewController>(), true);
    window.popViewController(true);
    EXPECT_TRUE(arrivesAt(firstPage, 2));
}

TEST_F(WebViewTest, FailedLoadShowsNothing) {
    const struct {
        const char* what;
        QByteArray answer;
        bool refuses;
    } cases[] = {
        {"refused", {}, true},
        {"closed without an answer", "", false},
        {"garbage", "\1\2\3 garbage \r\n\r\n", false},
        {"less than promised", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n<p>half", false},
        {"redirected in a circle", "HTTP/1.1 302 Found\r\nLocation: /Vexmor/moreInfo/firewall.html\r\n\r\n", false},
    };
    for (const auto& [what, bytes, refuses] : cases) {
        SCOPED_TRACE(what);
        server.answers[firstPage] = bytes;
        const QString host = server.host();
        if (refuses) server.close();
        open(host);
        QTest::qWait(4 * quietTime);
        EXPECT_FALSE(isFloatingButtonShown());
        EXPECT_FALSE(alert());
        EXPECT_TRUE(opened.isEmpty());
        window.popViewController(true);
        if (refuses) server.listen(QHostAddress::LocalHost);
    }

    server.answers["/broken"] = "this is not the web\r\n\r\n";
    server.answers["/second"] = answer("200 OK", link("/broken"));
    ASSERT_TRUE(openFirstPage(answer("200 OK", link("/second"))));
    tapLink();
    ASSERT_TRUE(floatingButtonComesToBe(true));
    tapLink();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.requests("/broken") == 1; }, patience));
    QTest::qWait(4 * quietTime);
    EXPECT_FALSE(isFloatingButtonShown()) << "the load has failed, though there is a page to go back to";
}

}  // namespace

#include "webview_test.moc"
