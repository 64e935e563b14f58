#include "screens/settings/VxmWebViewController.h"

#include <QUrl>

#include "platform/ui/controls/ImageButton.h"
#include "views/Chrome.h"
#include "views/Palette.h"
#include "views/VxmNavBarView.h"

namespace screens {

namespace {

constexpr int emailButton = 0;

QUrl documentationPage(const QString& host) {
    QUrl address;
    address.setScheme(QStringLiteral("http"));
    address.setAuthority(host, QUrl::StrictMode);
    address.setPath(QStringLiteral("/Vexmor/moreInfo/firewall.html"));
    return address;
}

QString supportLink(const QString& supportAddress) {
    return QStringLiteral("mailto:") + supportAddress.toLower();
}

QUrl supportMail(const QString& supportAddress) {
    return QUrl(
        QStringLiteral("mailto://") + supportAddress +
            QStringLiteral("?subject=Vexmor%20Help&body=Please%20include%20the%20following%20information%20in%20"
                           "your%20eMail:%3Cbr%3EiPhone%20firmware%20version:%20%3Cbr%3EiPhone%20model:%20%3Cbr"
                           "%3EApp%20which%20caused%20a%20Problem:%3Cbr%3EAlso,%20please%20read%20the%20"
                           "Troubleshooting%20section%20before%20emailing%20me.%20It%20has%20solutions%20for%20"
                           "the%20most%20common%20problems!"),
        QUrl::StrictMode);
}

}  // namespace

// The page with the floating button over its lower left corner.
class VxmWebViewController::PageAndButton : public QWidget {
public:
    explicit PageAndButton(QWidget* button) : button_(button) {
        button_->setParent(this);
        setAutoFillBackground(true);
        QPalette colours = QWidget::palette();
        colours.setColor(QPalette::Window, views::palette::bar);
        setPalette(colours);
    }

    void setPage(QWidget* page) {
        page_ = page;
        page_->lower();
        page_->setGeometry(rect());
        page_->show();
    }

protected:
    void resizeEvent(QResizeEvent*) override {
        if (page_) page_->setGeometry(rect());
        button_->setGeometry(5, height() - 37, 32, 32);
    }

private:
    QWidget* page_ = nullptr;
    QWidget* button_;
};

VxmWebViewController::VxmWebViewController(const views::Chrome& chrome, const QString& documentationHost,
                                           const QString& supportAddress, std::function<void(const QUrl&)> openURL)
    : VxmScreen(chrome),
      documentationHost_(documentationHost),
      supportAddress_(supportAddress),
      openURL_(std::move(openURL)) {}

VxmWebViewController::~VxmWebViewController() {
    if (theWebView_) theWebView_->setDelegate(nullptr);
}

void VxmWebViewController::loadView() {
    auto* bar = new views::VxmNavBarView({0, 0, 320, 40}, *this, true, false, false);
    bar->setTitleString(QStringLiteral("Documentation"));
    content_ = new PageAndButton(makeBackButton());
    buildView(bar, content_);
}

platform::ImageButton* VxmWebViewController::makeBackButton() {
    backButton_ = new platform::ImageButton;
    backButton_->setImage(QStringLiteral("BackButton"));
    backButton_->setAccessibleName(tr("Previous page"));
    backButton_->hide();
    connect(backButton_, &platform::ImageButton::clicked, this, &VxmWebViewController::goBackButton);
    return backButton_;
}

// Not before the screen has come to rest: making the first one of all takes longer than a frame.
void VxmWebViewController::makeWebView() {
    theWebView_ = platform::makeWebView(content_);
    if (!theWebView_) return;
    theWebView_->setDelegate(this);
    content_->setPage(theWebView_);
}

void VxmWebViewController::viewDidAppear(bool animated) {
    VxmScreen::viewDidAppear(animated);
    setTitle(QStringLiteral("more Information"));
    if (!theWebView_) makeWebView();
    if (!theWebView_) return;
    theWebView_->setBackgroundColor(views::palette::bar);
    theWebView_->loadRequest(documentationPage(documentationHost_));
    theWebView_->setFocus();
}

void VxmWebViewController::viewWillDisappear(bool animated) {
    VxmScreen::viewWillDisappear(animated);
    if (theWebView_) theWebView_->stopLoading();
}

void VxmWebViewController::webViewDidStartLoad() {
    backButton_->hide();
}

void VxmWebViewController::webViewDidFinishLoad() {
    if (theWebView_->canGoBack()) backButton_->show();
}

void VxmWebViewController::goBackButton() {
    theWebView_->goBack();
}

bool VxmWebViewController::shouldStartLoadWithRequest(const QUrl& address) {
    if (address.toString(QUrl::FullyEncoded).toLower() != supportLink(supportAddress_)) return true;
    remindToReadFirst();
    return false;
}

void VxmWebViewController::remindToReadFirst() {
    auto* alert = new platform::AlertView(
        QStringLiteral("please read troubleshooting and FAQ first!"),
        QStringLiteral("You can find answers to the most common questions and problems on the Troubleshooting and FAQ "
                       "page. Please read it first before you email me."),
        this, QStringLiteral("Email Urmeld"), {QStringLiteral("Read First")});
    alert->show(view());
}

void VxmWebViewController::willDismissWithButtonIndex(platform::AlertView&, int buttonIndex) {
    if (buttonIndex == emailButton) openURL_(supportMail(supportAddress_));
}

void VxmWebViewController::openURL(const QUrl& address) {
    openURL_(address);
}

}  // namespace screens
