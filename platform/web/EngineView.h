#pragma once

#include <QWebEnginePage>
#include <QWebEngineProfile>

#include "platform/ui/web/WebView.h"

class QWebEngineNewWindowRequest;
class QWebEngineView;

namespace platform {

// A page that asks the view's delegate before it goes anywhere. What it shows comes unencrypted and may be anybody's:
// no address leaves the app but that of a mail, and that only by a tap of the person on its link in the main frame.
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

    QWebEngineProfile profile_;  // of no name: it keeps nothing on the disk
    EnginePage page_{&profile_};
    QWebEngineView* view_;
};

}  // namespace platform
