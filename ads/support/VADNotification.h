// A message from web content, made from the URL that it asked to load.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/base/URL.h"
#include "platform/base/Value.h"

namespace valdren {

class VADNotification {
 public:
  /// Whether the scheme is exactly "gmsg".
  static bool isGMSGNotificationURL(const platform::URL& url);
  /// Whether the scheme is exactly "vantic", the older form.
  static bool isVanticNotificationURL(const platform::URL& url);
  static bool isNotificationURL(const platform::URL& url);

  /// The message, or null for a URL of neither scheme, for a "gmsg" URL without a path, which holds
  /// the name, and for a "vantic" URL whose host names none.
  static std::unique_ptr<VADNotification> notificationFromURL(const platform::URL& url);

  const std::string& name() const { return name_; }
  /// Absent for a message that takes none.
  const std::optional<platform::Dictionary>& parameters() const { return parameters_; }
  /// The text under a parameter's name; none when there is none.
  std::optional<std::string> parameter(std::string_view name) const;
  std::string description() const;

 private:
  VADNotification(std::string name, std::optional<platform::Dictionary> parameters)
      : name_(std::move(name)), parameters_(std::move(parameters)) {}
  static std::unique_ptr<VADNotification> fromVanticURL(const platform::URL& url);

  std::string name_;
  std::optional<platform::Dictionary> parameters_;
};

}  // namespace valdren
