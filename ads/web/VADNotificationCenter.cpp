#include "ads/web/VADNotificationCenter.h"

#include "ads/protocol/Script.h"
#include "ads/support/VADMacros.h"
#include "ads/support/VADNotification.h"
#include "platform/base/RunLoop.h"

namespace valdren {
VADNotificationCenter& VADNotificationCenter::defaultCenter() {
  // Never destroyed: delayed postings may be under way while the process ends.
  static auto* const center = new VADNotificationCenter;
  return *center;
}

void VADNotificationCenter::postNotificationFromURL(const platform::URL& url, const void* object) {
  const auto notification = VADNotification::notificationFromURL(url);
  if (notification) postNotificationName(notification->name(), object, notification->parameters());
}

void VADNotificationCenter::postNotificationFromURL(const platform::URL& url, VADSender object,
                                                    double withDelay) {
  platform::RunLoop::shared().performAfterDelay(
      *this, platform::Seconds(withDelay),
      [this, url, object = std::move(object)] { postNotificationFromURL(url, object.get()); });
}

void VADNotificationCenter::postJSNotification(const std::string& name,
                                               const std::optional<platform::Dictionary>& userInfo,
                                               platform::WebView* webView) {
  if (!webView) return;
  std::string script = std::string(kVADPageReceiver) + "('" + name + "'";
  if (userInfo) script += ", " + VADMacros::jsonify(*userInfo);
  webView->stringByEvaluatingJavaScriptFromString(script + ");");
}

}  // namespace valdren
