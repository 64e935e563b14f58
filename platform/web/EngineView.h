#pragma once

#include <QWebEnginePage>
#include <QWebEngineProfile>

#include "platform/ui/web/WebView.h"

class QWebEngineNewWindowRequest;
class QWebEngineView;

namespace platform {

// A page whose navigation is filtered by the view's delegate. Pages are loaded unencrypted and thus untrusted: the only
// addresses passed to the system are those of mailto links, and only after a tap of the user in the main frame.
class EnginePage : public QWebEnginePage {
    Q_OBJECT
public:
    explicit EnginePage(QWebEngineProfile* profile);

    WebViewDelegate* delegate = nullptr;

    bool acceptNavigationRequest(const QUrl& address, NavigationType type, bool isMainFrame) override;

private:
    void openIfTapped(const QUrl& address);
};

// The web view on Qt WebEngine.
class EngineView : public WebView {
    Q_OBJECT
public:
    explicit EngineView(QWidget* parent);

    void setDelegate(WebViewDelegate* delegate) override { page_.delegate = delegate; }
    void setBackgroundColor(const QColor& color) override;
    void loadRequest(const QUrl& address) override;
    void stopLoading() override;
    bool canGoBack() const override;
    void goBack() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void tellStart();
    void tellFinish();
    void loadingChanged(const QWebEngineLoadingInfo& loading);
    void urlChanged();
    void openHere(const QWebEngineNewWindowRequest& request);

    QWebEngineProfile profile_;  // off the record: an unnamed profile stores nothing on disk
    EnginePage page_{&profile_};
    QWebEngineView* view_;
};

}  // namespace platform
