#include "ads/support/VADNotification.h"

#include <cstdio>

#include "ads/protocol/Messages.h"
#include "ads/support/VADMacros.h"
#include "ads/support/VADNetworkUtilities.h"

namespace valdren {

bool VADNotification::isGMSGNotificationURL(const platform::URL& url) {
  return url.scheme() == kVADMessageScheme;
}

bool VADNotification::isVanticNotificationURL(const platform::URL& url) {
  return url.scheme() == kVADOlderMessageScheme;
}

bool VADNotification::isNotificationURL(const platform::URL& url) {
  return isGMSGNotificationURL(url) || isVanticNotificationURL(url);
}

std::unique_ptr<VADNotification> VADNotification::notificationFromURL(const platform::URL& url) {
  if (isVanticNotificationURL(url)) return fromVanticURL(url);
  if (!isGMSGNotificationURL(url)) return nullptr;
  const std::string path = url.path();
  if (path.empty()) return nullptr;
  return std::unique_ptr<VADNotification>(new VADNotification(
      path.substr(1), VADNetworkUtilities::dictionaryFromQueryString(url.query())));
}

std::unique_ptr<VADNotification> VADNotification::fromVanticURL(const platform::URL& url) {
  const auto make = [](std::string name, std::optional<platform::Dictionary> parameters) {
    return std::unique_ptr<VADNotification>(
        new VADNotification(std::move(name), std::move(parameters)));
  };
  const std::string host = url.host();
  if (host == kVADOlderMessageCloseCanvas) return make(kVADMessageClose, std::nullopt);
  platform::Dictionary query = VADNetworkUtilities::dictionaryFromQueryString(url.query());
  if (host == kVADMessageLog) return make(kVADMessageLog, std::move(query));
  if (host != kVADOlderMessageLaunch) return nullptr;
  platform::Dictionary parameters{{kVADMessageKeyAction, kVADActionBrowser}};
  if (const std::string* const destination = query.text(kVADMessageKeyAdURL))
    parameters.set(kVADMessageKeyURL, *destination);
  return make(kVADMessageOpen, std::move(parameters));
}

std::optional<std::string> VADNotification::parameter(std::string_view name) const {
  const std::string* const text = parameters_ ? parameters_->text(name) : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

std::string VADNotification::description() const {
  char address[32];
  std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
  return std::string("VADNotification<") + address + ">: name:" + name_ +
         " parameters:" + (parameters_ ? VADMacros::jsonify(*parameters_) : "(null)");
}

}  // namespace valdren
