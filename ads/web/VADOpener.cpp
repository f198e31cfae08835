#include "ads/web/VADOpener.h"

#include "ads/protocol/Messages.h"
#include "ads/support/VADNetworkUtilities.h"
#include "ads/support/VADNotification.h"
#include "ads/telemetry/VADClickTracker.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/web/VADAdEvents.h"
#include "ads/web/VADScreen.h"
#include "ads/web/VADWebViewDelegate.h"
#include "platform/application/Application.h"
#include "platform/application/MailComposer.h"
#include "platform/base/KeptUntilReturn.h"
#include "platform/base/MainThread.h"
#include "platform/base/RunLoop.h"

namespace valdren {
namespace {

constexpr platform::Seconds kRetrySeconds{0.3};
constexpr int kMostRetries = 3;
constexpr std::string_view kMailto = "mailto:";

/// How often the opening of an application has been put off since the last one went ahead; one
/// count for all openers.
int repeatCount = 0;

void trackClickURLs(const platform::WeakPtr<VADAdController>& adController) {
  if (const auto loader = platform::held(adController))
    loader->trackURLs(loader->pendingClickURLs());
}

/// Owns what it needs: a URL on its way out is opened even when the opener's page is gone by then.
void leaveFor(const platform::URL& url, const std::shared_ptr<VADAdEvents>& delegateManager,
              const platform::WeakPtr<VADAdController>& adController) {
  trackClickURLs(adController);
  if (VADClickTracker::activeTrackings() && repeatCount++ < kMostRetries) {
    platform::RunLoop::shared().performAfterDelay(
        kRetrySeconds,
        [url, delegateManager, adController] { leaveFor(url, delegateManager, adController); });
    return;
  }
  repeatCount = 0;
  if (delegateManager) delegateManager->willLeaveApplication();
  platform::RunLoop::shared().performAfterDelay(
      platform::kNextTurn, [url] { platform::Application::shared().openURL(url); });
}

std::vector<std::string> splitAtCommas(const std::string& text) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t comma; (comma = text.find(',', begin)) != std::string::npos; begin = comma + 1) {
    parts.push_back(text.substr(begin, comma - begin));
  }
  parts.push_back(text.substr(begin));
  return parts;
}

int orientationFor(const std::optional<std::string>& o) {
  if (o == "p") return kVADOrientationPortrait;
  if (o == "l") return kVADOrientationLandscape;
  return kVADOrientationAny;
}

}  // namespace

void VADOpener::openNotification(const VADNotification& notification) {
  platform::assertMainThread();
  const std::optional<std::string> action = notification.parameter(kVADMessageKeyAction);
  const std::optional<std::string> address = notification.parameter(kVADMessageKeyURL);
  const std::optional<std::string> html = notification.parameter(kVADMessageKeyHTML);
  std::optional<platform::URL> url;
  if (address) url = platform::URL::fromPage(*address);
  if (!url && !(html && action == kVADActionWebApp)) return;

  const int orientation = orientationFor(notification.parameter(kVADMessageKeyOrientation));
  url = VADStatistics::sharedStatistics().urlForClick(url);
  if (action == kVADActionBrowser || action == kVADActionVideo) {
    openBrowserToURL(url, orientation);
  } else if (action != kVADActionWebApp) {
    openApp(url);
  } else if (url) {
    openWebApp(url, orientation);
  } else {
    openWebAppWithHTML(html, orientation);
  }
}

void VADOpener::openApp(const std::optional<platform::URL>& url) {
  if (url) leaveFor(*url, delegateManager_, adController_);
}

void VADOpener::didOpen() {
  trackClickURLs(adController_);
}

void VADOpener::openBrowserToURL(const std::optional<platform::URL>& url,
                                 int supportedOrientations) {
  if (!canOpenScreens() || !url) return;
  present(*screens_->browser(optionsFor(supportedOrientations), *url, referringURL_));
}

void VADOpener::openWebApp(const std::optional<platform::URL>& url, int supportedOrientations) {
  if (!canOpenScreens() || !url) return;
  present(*screens_->webApp(optionsFor(supportedOrientations), *url));
}

void VADOpener::openWebAppWithHTML(const std::optional<std::string>& html,
                                   int supportedOrientations) {
  if (!canOpenScreens() || !html) return;
  std::optional<std::string> origin;
  if (openingWebView()) origin = VADWebViewDelegate::originOfPage(*openingWebView());
  present(*screens_->webAppWithHTML(optionsFor(supportedOrientations), *html, origin));
}

VADScreenOptions VADOpener::optionsFor(int supportedOrientations) const {
  return {supportedOrientations, openingWebView_, delegateManager_};
}

void VADOpener::present(VADScreen& screen) {
  platform::assertMainThread();
  // Presenting tells the publisher, who may throw the ad away, and this opener with it.
  const platform::WeakPtr<VADAdController> adController = adController_;
  screen.presentFromViewController(viewController());
  trackClickURLs(adController);
}

void VADOpener::openEmailComposer(const std::optional<platform::URL>& url) {
  if (!viewController() || !url) return;
  const std::string& text = url->absoluteString();
  const std::string rest = text.size() > kMailto.size() ? text.substr(kMailto.size()) : "";
  const std::size_t mark = rest.find('?');
  platform::Dictionary fields;
  if (mark != std::string::npos) {
    fields = VADNetworkUtilities::dictionaryFromQueryString(rest.substr(mark + 1));
  }
  const auto field = [&fields](std::string_view name) {
    const std::string* const value = fields.text(name);
    return value ? *value : std::string();
  };
  const auto composer = std::make_shared<platform::MailComposer>();
  composer->setDelegate(this);
  composer->setToRecipients({rest.substr(0, mark)});
  composer->setCcRecipients(splitAtCommas(field("cc")));
  composer->setBccRecipients(splitAtCommas(field("bcc")));
  composer->setSubject(field("subject"));
  composer->setMessageBody(field("body"));
  composer->setModalTransitionStyle(platform::ModalTransitionStyle::CoverVertical);
  const platform::WeakPtr<VADAdController> adController = adController_;
  composer->present(*viewController());
  trackClickURLs(adController);
}

void VADOpener::mailComposerDidFinish(platform::MailComposer&, platform::MailResult) {
  // The composer is a window of its own, which closes itself.
  if (viewController()) viewController()->becomeFirstResponder();
}

}  // namespace valdren
