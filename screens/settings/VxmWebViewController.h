#pragma once

#include <QPointer>
#include <functional>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/web/WebView.h"
#include "views/VxmScreen.h"

class QUrl;

namespace platform {
class ImageButton;
}

namespace screens {

// Shows the online documentation. The page's link to the support address becomes a guided step: a reminder to read
// first, then a mail that is already begun. A page that cannot be loaded shows nothing, and so does the screen where
// the web view is not installed.
class VxmWebViewController : public views::VxmScreen,
                             public platform::WebViewDelegate,
                             public platform::AlertViewDelegate {
    Q_OBJECT
public:
    // `chrome` outlives the screen. The host may carry a port. `openURL` hands an address to the system.
    VxmWebViewController(const views::Chrome& chrome, const QString& documentationHost, const QString& supportAddress,
                         std::function<void(const QUrl&)> openURL);
    ~VxmWebViewController() override;

    // nullptr before the first appearance, or when there is none.
    platform::WebView* theWebView() const { return theWebView_; }
    platform::ImageButton* backButton() const { return backButton_; }

    void webViewDidStartLoad() override;
    void webViewDidFinishLoad() override;
    bool shouldStartLoadWithRequest(const QUrl& address) override;
    void openURL(const QUrl& address) override;

    void willDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) override;

protected:
    void loadView() override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

private:
    class PageAndButton;

    platform::ImageButton* makeBackButton();
    void makeWebView();
    void remindToReadFirst();
    void goBackButton();

    QString documentationHost_;
    QString supportAddress_;
    std::function<void(const QUrl&)> openURL_;
    PageAndButton* content_ = nullptr;
    QPointer<platform::WebView> theWebView_;
    platform::ImageButton* backButton_ = nullptr;
};

}  // namespace screens
