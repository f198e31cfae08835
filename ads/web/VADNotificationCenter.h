// The client's own notifications: messages from web content, and events into it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/base/NotificationCenter.h"
#include "platform/base/URL.h"
#include "platform/web/WebView.h"

namespace valdren {

/// A sender that is kept alive until its notification is delivered.
using VADSender = std::shared_ptr<const void>;

class VADNotificationCenter : public platform::NotificationCenter, public platform::WeakTarget {
 public:
  /// The one that all of the client shares.
  static VADNotificationCenter& defaultCenter();

  /// Posts the message that the URL is, or nothing when it is none.
  void postNotificationFromURL(const platform::URL& url, const void* object);
  /// The same after `delay` seconds; 0 is the next turn of the run loop.
  void postNotificationFromURL(const platform::URL& url, VADSender object, double withDelay);

  /// Calls the page's receiving function with the event and, when present, the values as JSON. Null
  /// `webView` does nothing.
  void postJSNotification(const std::string& name,
                          const std::optional<platform::Dictionary>& userInfo,
                          platform::WebView* webView);
};

}  // namespace valdren
