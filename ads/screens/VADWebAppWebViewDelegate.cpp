#include "ads/screens/VADWebAppWebViewDelegate.h"

#include "ads/protocol/Messages.h"
#include "ads/request/VADIdentifierUtilities.h"
#include "ads/request/VADRequest.h"
#include "ads/screens/VADLandingPageTiming.h"
#include "ads/screens/VADScreenOpener.h"
#include "ads/screens/VADWebAppViewControllerPrivate.h"
#include "ads/web/VADNotificationCenter.h"
#include "platform/base/RunLoop.h"

namespace valdren {
namespace {

constexpr platform::Seconds kReleaseSeconds{2};

}  // namespace

std::shared_ptr<VADWebAppWebViewDelegate> VADWebAppWebViewDelegate::initWithWebAppPrivate(
    VADWebAppViewControllerPrivate& webAppPrivate) {
  return std::shared_ptr<VADWebAppWebViewDelegate>(new VADWebAppWebViewDelegate(webAppPrivate));
}

VADWebAppWebViewDelegate::VADWebAppWebViewDelegate(VADWebAppViewControllerPrivate& webAppPrivate)
    : VADWebViewDelegate(openerWithScreens()), webAppPrivate_(&webAppPrivate) {}

VADWebAppWebViewDelegate::~VADWebAppWebViewDelegate() {
  invalidateWeakReferences();
}

void VADWebAppWebViewDelegate::webViewDidStartLoad(platform::WebView& webView) {
  landingPageDidStartLoad();
  const auto shown = webView.shownURL();
  if (webAppPrivate_ && shown && shown->lowercaseScheme() != "about") {
    webAppPrivate_->originOfGivenPage.reset();  // what is blank from now on was not given
  }
  VADWebViewDelegate::webViewDidStartLoad(webView);
}

void VADWebAppWebViewDelegate::webViewDidFinishLoad(platform::WebView& webView) {
  landingPageDidFinishLoad();
  VADWebViewDelegate::webViewDidFinishLoad(webView);
  postOnShowEvent();
}

std::optional<std::string> VADWebAppWebViewDelegate::originOfGivenPage() const {
  return webAppPrivate_ ? webAppPrivate_->originOfGivenPage : std::nullopt;
}

void VADWebAppWebViewDelegate::loadedFirstPage(platform::WebView&) {
  if (!webAppPrivate_ || !webAppPrivate_->loadingSpinner) return;
  webAppPrivate_->loadingSpinner->removeFromSuperview();
  webAppPrivate_->loadingSpinner.reset();
}

void VADWebAppWebViewDelegate::setPendingOnShow(bool pending) {
  pendingOnShow_ = pending;
  if (!webAppPrivate_ || !webAppPrivate_->webView) return;
  if (!webAppPrivate_->webView->isLoading()) postOnShowEvent();
}

void VADWebAppWebViewDelegate::postOnShowEvent() {
  if (!pendingOnShow_ || calledOnShow_ || !webAppPrivate_) return;
  const std::string& device = VADIdentifierUtilities::sharedInstance().deviceSubmodel();
  VADNotificationCenter::defaultCenter().postJSNotification(
      kVADMessageOnShow,
      platform::Dictionary{{"version", VADRequest::sdkVersion()}, {"device", device}},
      webAppPrivate_->webView.get());
  pendingOnShow_ = false;
  calledOnShow_ = true;
}

void VADWebAppWebViewDelegate::releaseWithWebView(std::shared_ptr<VADWebView> webView) {
  setViewController(nullptr);
  opener()->setViewController(nullptr);
  webAppPrivate_ = nullptr;
  if (!webView) return;
  // The call owns both; nobody else does.
  platform::RunLoop::shared().performAfterDelay(
      kReleaseSeconds,
      [self = std::static_pointer_cast<VADWebAppWebViewDelegate>(shared_from_this()),
       webView = std::move(webView)] { self->delayedRelease(*webView); });
}

void VADWebAppWebViewDelegate::delayedRelease(VADWebView& webView) {
  webView.setDelegate(nullptr);
  webView.loadHTMLString("", std::nullopt);
  platform::RunLoop::shared().autorelease(shared_from_this());
}

}  // namespace valdren
