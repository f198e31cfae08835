#include "ads/web/VADBannerWebViewDelegate.h"

#include "ads/request/VADRequestError.h"
#include "ads/request/VADRequestPrivate.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/telemetry/VADTiming.h"
#include "ads/web/VADAdEvents.h"
#include "ads/web/VADOpener.h"
#include "ads/web/VADWebView.h"
#include "platform/base/KeptUntilReturn.h"

namespace valdren {
namespace {

/// What a page does within this time of its appearance is its own doing, in seconds.
constexpr double kShortestTimeToClick = 0.15;

}  // namespace

std::shared_ptr<VADBannerWebViewDelegate> VADBannerWebViewDelegate::initWithObjectPrivate(
    VADAdController& loader, std::unique_ptr<VADOpener> opener) {
  std::shared_ptr<VADBannerWebViewDelegate> delegate(
      new VADBannerWebViewDelegate(loader, std::move(opener)));
  loader.webView()->setDelegate(delegate.get());
  return delegate;
}

VADBannerWebViewDelegate::VADBannerWebViewDelegate(VADAdController& loader,
                                                   std::unique_ptr<VADOpener> opener)
    : VADWebViewDelegate(std::move(opener)), private_(&loader) {
  this->opener()->setAdController(private_);
}

VADBannerWebViewDelegate::~VADBannerWebViewDelegate() {
  invalidateWeakReferences();
  if (private_) private_->webView()->setDelegate(nullptr);
}

bool VADBannerWebViewDelegate::isClick(platform::NavigationType type) const {
  return private_ && private_->state() == kVADStateShowingAd &&
         VADTiming::counter() - private_->timeLastLoaded() >= kShortestTimeToClick &&
         type != platform::NavigationType::BackForward &&
         type != platform::NavigationType::Reload && private_->webView()->touched();
}

bool VADBannerWebViewDelegate::webViewShouldStartLoad(platform::WebView& webView,
                                                      const platform::URLRequest& request,
                                                      platform::NavigationType type) {
  const platform::KeptUntilReturn kept(*this, webView);
  const auto loader = platform::held(private_);
  if (!loader) return VADWebViewDelegate::webViewShouldStartLoad(webView, request, type);

  setViewController(loader->rootViewController());
  opener()->setDelegateManager(loader->delegateManager());
  opener()->setViewController(loader->rootViewController());
  if (!isClick(type)) {
    return VADWebViewDelegate::webViewShouldStartLoad(webView, request, type);
  }
  const platform::URL clickURL = VADStatistics::sharedStatistics().urlForClick(request.url);
  if (VADWebViewDelegate::webViewShouldStartLoad(webView, request, type)) {
    openClickURL(clickURL, webView);
  }
  return false;
}

void VADBannerWebViewDelegate::openClickURL(const platform::URL& url, platform::WebView& webView) {
  const auto loader = platform::held(private_);
  opener()->setReferringURL(webView.currentURL());
  if (!loader || !url.lowercaseScheme().starts_with("http")) return;
  if (loader->pendingClickURLs().empty()) {
    opener()->openBrowserToURL(url, loader->supportedOrientations());
  } else {
    opener()->openWebApp(url, loader->supportedOrientations());
  }
}

void VADBannerWebViewDelegate::webViewDidFinishLoad(platform::WebView& webView) {
  const platform::KeptUntilReturn kept(*this, webView);
  const auto loader = platform::held(private_);
  VADWebViewDelegate::webViewDidFinishLoad(webView);
  if (!loader || loader->state() != kVADStateRenderingAd) return;
  loader->changeState(kVADStateShowingAd);
  // The next click comes from another page than the last one did.
  opener()->setReferringURL(std::nullopt);
  webView.setHidden(false);
  loader->delegateManager()->didReceiveAd();
  loader->trackURLs(loader->pendingTrackingURLs());
  VADStatistics::sharedStatistics().endTimingNamed(kVADParameterPriorRequestLatency);
  VADStatistics::sharedStatistics().startTimingNamed(kVADParameterPriorPreClickLatency);
}

void VADBannerWebViewDelegate::webViewDidFailLoad(platform::WebView& webView,
                                                  const platform::Error& error) {
  const platform::KeptUntilReturn kept(*this, webView);
  const auto loader = platform::held(private_);
  VADWebViewDelegate::webViewDidFailLoad(webView, error);
  if (!loader || loader->state() == kVADStateShowingAd) return;
  loader->changeState(kVADStateFailed);
  loader->delegateManager()->didFailToReceiveAdWithError(
      VADRequestError::errorWithCode(kVADErrorNetworkError, loader->request().get()));
}

void VADBannerWebViewDelegate::webViewProcessDidEnd(platform::WebView&, const platform::Error&) {
  const platform::KeptUntilReturn kept(*this);
  if (const auto loader = platform::held(private_)) loader->webProcessDidEnd();
}

}  // namespace valdren
