#include "ads/screens/VADBrowserWebViewDelegate.h"

#include "ads/screens/VADBrowserController.h"
#include "ads/screens/VADLandingPageTiming.h"
#include "ads/screens/VADScreenOpener.h"
#include "ads/telemetry/VADStatistics.h"

namespace valdren {

std::shared_ptr<VADBrowserWebViewDelegate> VADBrowserWebViewDelegate::initWithBrowserController(
    VADBrowserController& browser) {
  return std::shared_ptr<VADBrowserWebViewDelegate>(new VADBrowserWebViewDelegate(browser));
}

VADBrowserWebViewDelegate::VADBrowserWebViewDelegate(VADBrowserController& browser)
    : VADWebViewDelegate(openerWithScreens()), browserController_(&browser) {}

VADBrowserWebViewDelegate::~VADBrowserWebViewDelegate() {
  invalidateWeakReferences();
}

bool VADBrowserWebViewDelegate::webViewShouldStartLoad(platform::WebView& webView,
                                                       const platform::URLRequest& request,
                                                       platform::NavigationType type) {
  if (type == platform::NavigationType::LinkClicked ||
      type == platform::NavigationType::FormSubmitted) {
    const std::string scheme = request.url.lowercaseScheme();
    VADStatistics& statistics = VADStatistics::sharedStatistics();
    if (scheme == "http") statistics.incrementPageNavigationCount();
    if (scheme == "https") statistics.incrementSSLPageNavigationCount();
  }
  return VADWebViewDelegate::webViewShouldStartLoad(webView, request, type);
}

void VADBrowserWebViewDelegate::webViewDidStartLoad(platform::WebView& webView) {
  landingPageDidStartLoad();
  VADWebViewDelegate::webViewDidStartLoad(webView);
  if (browserController_) browserController_->refreshToolbar();
}

void VADBrowserWebViewDelegate::webViewDidFinishLoad(platform::WebView& webView) {
  landingPageDidFinishLoad();
  VADWebViewDelegate::webViewDidFinishLoad(webView);
  if (browserController_) browserController_->refreshToolbar();
}

void VADBrowserWebViewDelegate::webViewDidFailLoad(platform::WebView& webView,
                                                   const platform::Error& error) {
  VADWebViewDelegate::webViewDidFailLoad(webView, error);
  if (browserController_) browserController_->refreshToolbar();
}

void VADBrowserWebViewDelegate::webViewDidChangeTitle(platform::WebView&) {
  if (browserController_) browserController_->refreshPrompt();
}

}  // namespace valdren
