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

// Records the last link that the user tapped, in an isolated script world that the page's scripts cannot access. It is
// registered before they run and accepts trusted events only (mouse, key, screen reader).
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

// Whether the scheme is one that the engine displays itself.
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

// The engine reports "link clicked" for navigation by scripts, too; hence the check against the recorded tap.
void EnginePage::openIfTapped(const QUrl& address) {
    const auto open = [this, address](const QVariant& tapped) {
        if (QUrl::fromEncoded(tapped.toByteArray()) == address && delegate) delegate->openURL(address);
    };
    runJavaScript(QString::fromLatin1(takeTappedLink), QWebEngineScript::ApplicationWorld, open);
}

EngineView::EngineView(QWidget* parent) : WebView(parent), view_(new QWebEngineView(&page_, this)) {
    setFocusProxy(view_);
    view_->setContextMenuPolicy(Qt::NoContextMenu);
    view_->setAcceptDrops(false);  // dropped files must not be opened as pages
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

// The engine swallows Escape; other unused keys propagate. The focus widget is a child of the view and is replaced with
// every new renderer process, so every added child is filtered.
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

// The engine also reports loads of links that are passed to the system or rejected; these leave the page unchanged and
// are ignored.
void EngineView::loadingChanged(const QWebEngineLoadingInfo& loading) {
    if (!isPage(loading.url())) return;
    if (loading.status() == QWebEngineLoadingInfo::LoadStartedStatus) tellStart();
    if (loading.status() == QWebEngineLoadingInfo::LoadSucceededStatus) tellFinish();
}

// Navigation to a fragment adds a history entry without a load; the delegate is informed as for a load.
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
