#pragma once

#include <QWidget>

class QColor;
class QUrl;

namespace platform {

// Receives the load events of a web view and filters its requests. Not owned by the view.
class WebViewDelegate {
public:
    WebViewDelegate() = default;
    virtual ~WebViewDelegate() = default;
    WebViewDelegate(const WebViewDelegate&) = delete;
    WebViewDelegate& operator=(const WebViewDelegate&) = delete;

    virtual void webViewDidStartLoad() {}
    // After a successful load only; a failed or stopped load is not reported.
    virtual void webViewDidFinishLoad() {}
    // Called before every navigation, those of frames inside the page included. False cancels it.
    virtual bool shouldStartLoadWithRequest(const QUrl&) { return true; }
    // The user tapped a mailto link and shouldStartLoadWithRequest() allowed it: open it with the system's handler.
    // All other addresses that are not web pages are ignored.
    virtual void openURL(const QUrl&) {}
};

// Shows web pages. It stores nothing on disk and opens no windows: links that request one open in the view itself. A
// failed load leaves the view unchanged. Main thread only.
class WebView : public QWidget {
public:
    using QWidget::QWidget;

    // nullptr for none.
    virtual void setDelegate(WebViewDelegate* delegate) = 0;
    // The background until a page paints its own.
    virtual void setBackgroundColor(const QColor& color) = 0;

    // Always fetches; there is no cache.
    virtual void loadRequest(const QUrl& address) = 0;
    virtual void stopLoading() = 0;
    virtual bool canGoBack() const = 0;
    virtual void goBack() = 0;
};

// Returns a new web view, owned by `parent` (not nullptr). The first call loads the module with the web engine, which
// takes about 0.1 s and stays loaded; an app that shows no page does not pay for it. Returns nullptr when the module is
// not installed (search path: platform/modules/Modules.h), and for root, for whom the engine has no sandbox, unless
// the sandbox is disabled by QTWEBENGINE_DISABLE_SANDBOX=1 or --no-sandbox.
WebView* makeWebView(QWidget* parent);

}  // namespace platform
