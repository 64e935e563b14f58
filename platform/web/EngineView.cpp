#include "platform/web/EngineView.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineView>
#include <algorithm>
#include <array>

namespace platform {

namespace {

// Remembers the link that the person tapped last, in a world of its own that the page's scripts cannot reach. Listens
// before any of them can, and only to what a finger, a key or a screen reader did.
constexpr auto watchTaps = R"(
    let tappedLink = '';
    addEventListener('click', event => {
        if (event.isTrusted) tappedLink = event.composedPath().find(each => each.localName === 'a')?.href ?? '';
    }, true);
)";
constexpr auto takeTappedLink = "[tappedLink, tappedLink = ''][0]";

QWebEngineScript tapWatcher() {
    QWebEngineScript script;
    script.setSourceCode(QString::fromLatin1(watchTaps));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setRunsOnSubFrames(false);
    return script;
}

// Whether the address is one of a page, as against one that the system has a program for.
bool isPage(const QUrl& address) {
    constexpr std::array schemes{u"http", u"https", u"about", u"data", u"blob"};
    return std::any_of(schemes.begin(), schemes.end(),
                       [scheme = address.scheme()](const char16_t* known) { return scheme == QStringView(known); });
}

}  // namespace

EnginePage::EnginePage(QWebEngineProfile* profile) : QWebEnginePage(profile) {
    scripts().insert(tapWatcher());
}

bool EnginePage::acceptNavigationRequest(const QUrl& address, NavigationType, bool isMainFrame) {
    if (delegate && !delegate->shouldStartLoadWithRequest(address)) return false;
    if (isPage(address)) return true;
    if (isMainFrame && address.scheme() == u"mailto") openIfTapped(address);
    return false;
}

// The engine's word for what a page asks, "link clicked", is true of a script as well.
void EnginePage::openIfTapped(const QUrl& address) {
    const auto open = [this, address](const QVariant& tapped) {
        if (QUrl::fromEncoded(tapped.toByteArray()) == address && delegate) delegate->openURL(address);
    };
    runJavaScript(QString::fromLatin1(takeTappedLink), QWebEngineScript::ApplicationWorld, open);
}

EngineView::EngineView(QWidget* parent) : WebView(parent), view_(new QWebEngineView(&page_, this)) {
    setFocusProxy(view_);
    view_->setContextMenuPolicy(Qt::NoContextMenu);
    view_->setAcceptDrops(false);  // a file that is dropped would be a page that nobody linked to
    page_.settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    page_.settings()->setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);
    profile_.setHttpCacheType(QWebEngineProfile::NoCache);
    view_->installEventFilter(this);
    connect(&page_, &QWebEnginePage::loadingChanged, this, &EngineView::loadingChanged);
    connect(&page_, &QWebEnginePage::urlChanged, this, &EngineView::urlChanged);
    connect(&page_, &QWebEnginePage::newWindowRequested, this, &EngineView::openHere);
}

void EngineView::setBackgroundColor(const QColor& color) {
    page_.setBackgroundColor(color);
}

void EngineView::loadRequest(const QUrl& address) {
    view_->load(address);
}

void EngineView::stopLoading() {
    view_->stop();
}

bool EngineView::canGoBack() const {
    return page_.history()->canGoBack();
}

void EngineView::goBack() {
    view_->back();
}

void EngineView::resizeEvent(QResizeEvent*) {
    view_->setGeometry(rect());
}

// Of the keys that a page has no use for, the engine keeps Escape to itself. The widget that has the keyboard is a
// child of the view, and a new one for every process that the engine draws pages in.
bool EngineView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ChildAdded) {
        static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
    } else if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        QCoreApplication::sendEvent(parentWidget(), event);
        return true;
    }
    return WebView::eventFilter(watched, event);
}

void EngineView::tellStart() {
    if (page_.delegate) page_.delegate->webViewDidStartLoad();
}

void EngineView::tellFinish() {
    if (page_.delegate) page_.delegate->webViewDidFinishLoad();
}

// The engine reports a load even for a link that it then hands on or that was refused; the page stays, so nothing was
// loaded.
void EngineView::loadingChanged(const QWebEngineLoadingInfo& loading) {
    if (!isPage(loading.url())) return;
    if (loading.status() == QWebEngineLoadingInfo::LoadStartedStatus) tellStart();
    if (loading.status() == QWebEngineLoadingInfo::LoadSucceededStatus) tellFinish();
}

// A step within the page is one in its history as well, without a load.
void EngineView::urlChanged() {
    if (page_.isLoading()) return;
    tellStart();
    tellFinish();
}

void EngineView::openHere(const QWebEngineNewWindowRequest& request) {
    if (!request.isUserInitiated()) return;
    const QUrl address = request.requestedUrl();
    if (isPage(address)) {
        view_->load(address);
    } else {
        page_.acceptNavigationRequest(address, QWebEnginePage::NavigationTypeLinkClicked, true);
    }
}

}  // namespace platform
