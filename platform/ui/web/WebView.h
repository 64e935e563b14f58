#pragma once

#include <QWidget>

class QColor;
class QUrl;

namespace platform {

// Hears of a web view's loads and decides on its requests. Not owned by the view.
class WebViewDelegate {
public:
    WebViewDelegate() = default;
    virtual ~WebViewDelegate() = default;
    WebViewDelegate(const WebViewDelegate&) = delete;
    WebViewDelegate& operator=(const WebViewDelegate&) = delete;

    virtual void webViewDidStartLoad() {}
    // Only after a load that succeeded; one that fails or is stopped ends in silence.
    virtual void webViewDidFinishLoad() {}
    // Asked before every request, those of frames inside the page included.
    virtual bool shouldStartLoadWithRequest(const QUrl&) { return true; }
    // The person tapped a link to a mail, and the request was allowed: the system's to open. Whatever else is no page
    // leads nowhere.
    virtual void openURL(const QUrl&) {}
};

// Shows web pages. It remembers nothing beyond its own life, opens no window, and a link that asks for one opens in the
// view itself. A failed load leaves the view as it is. Main thread only.
class WebView : public QWidget {
public:
    using QWidget::QWidget;

    // nullptr for none.
    virtual void setDelegate(WebViewDelegate* delegate) = 0;
    // What shows until a page paints its own.
    virtual void setBackgroundColor(const QColor& color) = 0;

    // An address that was loaded before is loaded again, not taken from a cache.
    virtual void loadRequest(const QUrl& address) = 0;
    virtual void stopLoading() = 0;
    virtual bool canGoBack() const = 0;
    virtual void goBack() = 0;
};

// A new web view, owned by `parent`, which may not be nullptr. The first call loads the module with the web engine,
// which takes about a tenth of a second and stays; an app that shows no page pays nothing for it. nullptr when the
// module is not installed (platform/modules/Modules.h says where it is looked for), and for root, to whom the engine
// refuses its sandbox, unless that is given up by the engine's own QTWEBENGINE_DISABLE_SANDBOX=1 or --no-sandbox.
WebView* makeWebView(QWidget* parent);

}  // namespace platform
