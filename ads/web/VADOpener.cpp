#include "ads/web/VADOpener.h"

#include "ads/api/VADDelegateManager.h"
#include "ads/support/VADNotification.h"
#include "ads/telemetry/VADClickTracker.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/web/VADScreen.h"
#include "platform/Application.h"
#include "platform/RunLoop.h"

namespace valdren {
namespace {

constexpr double kRetrySeconds = 0.3;
constexpr int kMostRetries = 3;

/// How often the opening of an application has been put off since the last one went ahead; one
/// count for all openers.
int repeatCount = 0;

void trackClickURLs(const platform::WeakPtr<VADAdController>& adController) {
  if (!adController) return;
  const std::shared_ptr<VADAdController> keptUntilReturn = adController->shared_from_this();
  keptUntilReturn->trackURLs(keptUntilReturn->pendingClickURLs());
}

/// Owns what it needs: a URL on its way out is opened even when the opener's page is gone by then.
void leaveFor(const platform::URL& url, const std::shared_ptr<VADDelegateManager>& delegateManager,
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
      0, [url] { platform::Application::shared().openURL(url); });
}

int orientationFor(const std::optional<std::string>& o) {
  if (o == "p") return kVADOrientationPortrait;
  if (o == "l") return kVADOrientationLandscape;
  return kVADOrientationAny;
}

}  // namespace

void VADOpener::openNotification(const VADNotification& notification) {
  const std::optional<std::string> action = notification.parameter("a");
  const std::optional<std::string> address = notification.parameter("u");
  const std::optional<std::string> html = notification.parameter("html");
  std::optional<platform::URL> url;
  if (address) url = platform::URL::fromPage(*address);
  if (!url && !(html && action == "webapp")) return;

  const int orientation = orientationFor(notification.parameter("o"));
  if (url) url = VADStatistics::sharedStatistics().urlForClick(*url);
  if (action == "browser" || action == "video") {
    openBrowserToURL(url, orientation);
  } else if (action != "webapp") {
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

void VADOpener::openBrowserToURL(const std::optional<platform::URL>&, int) {}
void VADOpener::openWebApp(const std::optional<platform::URL>&, int) {}
void VADOpener::openWebAppWithHTML(const std::optional<std::string>&, int) {}
void VADOpener::openEmailComposer(const std::optional<platform::URL>&) {}

}  // namespace valdren
