#include "ads/web/VADWebViewDelegate.h"

#include <algorithm>
#include <limits>

#include "ads/protocol/Messages.h"
#include "ads/protocol/Parameters.h"
#include "ads/request/VADIdentifierUtilities.h"
#include "ads/signals/Signals.h"
#include "ads/support/VADNetworkUtilities.h"
#include "ads/support/VADNotification.h"
#include "ads/telemetry/VADClickTracker.h"
#include "ads/web/VADNotificationCenter.h"
#include "ads/web/VADOpener.h"
#include "ads/web/VADScreen.h"
#include "platform/application/Application.h"
#include "platform/base/KeptUntilReturn.h"
#include "platform/base/Log.h"
#include "platform/base/RunLoop.h"
#include "platform/device/SystemSound.h"

namespace valdren {
namespace {

/// How many messages of one page may wait for the next turn of the run loop; what a page sends
/// beyond is dropped.
constexpr int kMostDeferredMessages = 256;
/// How many addresses a page may ask about at once; what is beyond is left out.
constexpr std::size_t kMostOpenableURLs = 200;

std::vector<std::string> splitAtCommas(std::string_view text) {
  std::vector<std::string> pieces;
  while (pieces.size() < kMostOpenableURLs) {
    const std::size_t comma = text.find(',');
    pieces.emplace_back(text.substr(0, comma));
    if (comma == std::string_view::npos) break;
    text.remove_prefix(comma + 1);
  }
  return pieces;
}

std::optional<int> angleOf(platform::InterfaceOrientation orientation) {
  switch (orientation) {
    case platform::InterfaceOrientation::Portrait: return 0;
    case platform::InterfaceOrientation::PortraitUpsideDown: return 180;
    case platform::InterfaceOrientation::LandscapeRight: return 90;
    case platform::InterfaceOrientation::LandscapeLeft: return -90;
    default: return std::nullopt;
  }
}

/// Whether the page went there by itself without naming a page of the host.
bool isPageless(const platform::URL& url, platform::NavigationType type) {
  if (type != platform::NavigationType::Other) return false;
  const std::string path = url.path();
  return path.size() < 2 || path.front() != '/';  // "about:blank" has no path, only a name
}

void postWebAction(const platform::WebView& webView, platform::Dictionary userInfo) {
  platform::NotificationCenter::defaultCenter().postNotificationName(
      VADWebViewDelegateDidReceiveWebAction, &webView, std::move(userInfo));
}

/// The URL with the click signals for its "ai" value; as it is when there are none.
std::optional<platform::URL> withSpamSignals(const platform::URL& url) {
  const auto adIdentifier = VADNetworkUtilities::parameterValueForKey(kVADQueryAdIdentifier, url);
  std::string signals;
  if (!adIdentifier || vad_gmcs(*adIdentifier, signals) == 0) return url;
  return VADNetworkUtilities::appendQueryKey(signals, std::nullopt, url);
}

}  // namespace

VADWebViewDelegate::VADWebViewDelegate() : VADWebViewDelegate(std::make_unique<VADOpener>()) {}

VADWebViewDelegate::VADWebViewDelegate(std::unique_ptr<VADOpener> opener)
    : opener_(std::move(opener)) {}

VADWebViewDelegate::~VADWebViewDelegate() {
  invalidateWeakReferences();
  if (tracker_) tracker_->reset();
}

void VADWebViewDelegate::notifyWebViewOfOrientationChange(
    platform::WebView& webView, platform::InterfaceOrientation orientation) {
  const std::optional<int> angle = angleOf(orientation);
  if (!angle) return;
  webView.stringByEvaluatingJavaScriptFromString(
      "window.__defineGetter__('orientation',function(){return " + std::to_string(*angle) +
      ";});window.onorientationchange();");
}

bool VADWebViewDelegate::webViewShouldStartLoad(platform::WebView& webView,
                                                const platform::URLRequest& request,
                                                platform::NavigationType type) {
  // Whoever is told may let go of the page and of its screen.
  const platform::KeptUntilReturn kept(*this, webView);

  const platform::URL url = request.url;
  const std::string scheme = url.lowercaseScheme();
  const auto userAgent = request.headers.find("User-Agent");
  if (userAgent != request.headers.end()) {
    VADNetworkUtilities::setUserAgentString(userAgent->second);
  }
  opener_->setViewController(viewController_);
  opener_->setOpeningWebView(&webView);
  platform::Dictionary userInfo{{kVADMessageKeyURL, url.absoluteString()}};

  if (VADNotification::isNotificationURL(url)) {
    platform::logDebug("Message from a page: " + url.absoluteString());
    const auto notification = VADNotification::notificationFromURL(url);
    if (!notification) {
      platform::logWarning("A page's message was refused, for it has no name.");
      return false;
    }
    userInfo.set(kVADMessageKeyAction, notification->name());
    postWebAction(webView, std::move(userInfo));
    performMessage(*notification, url, webView);
    return false;
  }

  if (!isPageless(url, type)) postWebAction(webView, std::move(userInfo));
  if (scheme == "mailto") {
    opener_->openEmailComposer(url);
    return false;
  }
  if (scheme == "file") return false;
  if (scheme == "about" || scheme == "http" || scheme == "https") return true;
  opener_->openApp(url);
  return false;
}

void VADWebViewDelegate::performMessage(const VADNotification& notification,
                                        const platform::URL& url, platform::WebView& webView) {
  const std::string& name = notification.name();
  const platform::Dictionary none;
  const platform::Dictionary& parameters =
      notification.parameters() ? *notification.parameters() : none;
  if (name == kVADMessageClick) {
    trackURLString(parameters.text(kVADMessageKeyURL), true);
  } else if (name == kVADMessageClose) {
    auto* const screen = dynamic_cast<VADScreen*>(viewController());
    if (screen) screen->relinquishScreen();
  } else if (name == kVADMessageHTTPTrack) {
    trackURLString(parameters.text(kVADMessageKeyURL), false);
  } else if (name == kVADMessageLog) {
    platform::log(notification.parameter(kVADMessageKeyString).value_or("(null)"));
  } else if (name == kVADMessageOpen) {
    opener_->openNotification(notification);
  } else if (name == kVADMessageTouch) {
    processTouchSignals(parameters);
  } else if (name == kVADMessageVibrate) {
    platform::SystemSound::shared().play(platform::kSystemSoundVibrate);
  } else if (name == kVADMessageCanOpenURLs) {
    const std::string* const urls = parameters.text(kVADMessageKeyURLs);
    processCanOpenURLs(urls ? splitAtCommas(*urls) : std::vector<std::string>(), webView);
  } else if (name == kVADMessageEvalInOpener) {
    askOpener(parameters, webView);
  } else if (mayDefer()) {
    VADNotificationCenter::defaultCenter().postNotificationFromURL(
        url, VADSender(webView.shared_from_this(), &webView), 0);
  }
}

std::optional<std::string> VADWebViewDelegate::originOfPage(const platform::WebView& webView) {
  const std::optional<platform::URL> shown = webView.shownURL();
  if (!shown) return std::nullopt;
  const auto* const delegate = dynamic_cast<const VADWebViewDelegate*>(webView.delegate());
  if (delegate && shown->lowercaseScheme() == "about") return delegate->originOfGivenPage();
  return shown->origin();
}

/// Script runs across only within one origin, as anywhere in the web.
void VADWebViewDelegate::askOpener(const platform::Dictionary& parameters,
                                   platform::WebView& webView) {
  const std::optional<std::string> origin = originOfPage(webView);
  if (!openingWebView() || !origin || !mayDefer()) return;
  platform::RunLoop::shared().performAfterDelay(
      *this, platform::kNextTurn, [this, parameters, origin] {
        // The opener may show another page by now.
        if (!openingWebView() || originOfPage(*openingWebView()) != origin) return;
        evaluateJavaScriptInOpener(parameters);
      });
}

bool VADWebViewDelegate::mayDefer() {
  if (deferredMessages_ == 0) {
    platform::RunLoop::shared().performAfterDelay(*this, platform::kNextTurn,
                                                  [this] { deferredMessages_ = 0; });
  }
  if (deferredMessages_ >= kMostDeferredMessages) {
    platform::logDebug("A page sends messages faster than they can be passed on; one is dropped.");
    return false;
  }
  ++deferredMessages_;
  return true;
}

void VADWebViewDelegate::webViewDidStartLoad(platform::WebView&) {}

void VADWebViewDelegate::webViewDidFinishLoad(platform::WebView& webView) {
  notifyWebViewOfOrientationChange(webView, platform::Application::shared().statusBarOrientation());
  if (hasLoadedAtLeastOnce_) return;
  hasLoadedAtLeastOnce_ = true;
  loadedFirstPage(webView);
}

void VADWebViewDelegate::webViewDidFailLoad(platform::WebView&, const platform::Error&) {}

void VADWebViewDelegate::trackURLString(const std::string* urlString, bool appendSpamSignals) {
  if (!tracker_) tracker_ = std::make_shared<VADClickTracker>();
  std::optional<platform::URL> url;
  if (urlString) url = platform::URL::fromPage(*urlString);
  if (url && appendSpamSignals) url = withSpamSignals(*url);
  tracker_->trackURL(url);
}

void VADWebViewDelegate::processTouchSignals(const platform::Dictionary& parameters) {
  vad_htg(intForKey(kVADMessageKeyTouchX, parameters), intForKey(kVADMessageKeyTouchY, parameters),
          intForKey(kVADMessageKeyTouchDuration, parameters));
}

void VADWebViewDelegate::processCanOpenURLs(const std::vector<std::string>& urls,
                                            platform::WebView& webView) {
  VADNotificationCenter::defaultCenter().postJSNotification(
      kVADMessageOpenableURLs, VADIdentifierUtilities::sharedInstance().canOpenURLs(urls),
      &webView);
}

void VADWebViewDelegate::evaluateJavaScriptInOpener(const platform::Dictionary& parameters) {
  platform::WebView* const opener = openingWebView();
  const std::string* const script = parameters.text(kVADMessageKeyScript);
  if (!opener || !script) return;
  // The parameters name no page that could be told the result: a message's keys are in lower case,
  // and the page's key, "webView", is not. So the result is dropped.
  opener->stringByEvaluatingJavaScriptFromString(*script);
}

int VADWebViewDelegate::intForKey(std::string_view key, const platform::Dictionary& dictionary) {
  const platform::Value* const value = dictionary.find(key);
  if (!value) return -1;
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(
      std::clamp<std::int64_t>(value->integerValue(), Limits::min(), Limits::max()));
}

}  // namespace valdren
