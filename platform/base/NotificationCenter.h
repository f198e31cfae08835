// Named notifications from senders to observers that do not know each other.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Value.h"
#include "platform/base/WeakPtr.h"

namespace valdren::platform {

/// What an observer receives. `object` identifies the sender and is only good for comparison. It
/// may be null and owns nothing.
struct Notification {
  std::string name;
  const void* object = nullptr;
  /// Absent when the sender gave none.
  std::optional<Dictionary> userInfo;
};

/// Delivers at once, on the calling thread (the main thread), in the order of registration. An
/// observer that is destroyed or removed during a delivery is not called any more; one that is
/// added during a delivery is not called by it.
class NotificationCenter {
 public:
  using Handler = std::function<void(const Notification&)>;

  /// The application's own centre.
  static NotificationCenter& defaultCenter();

  NotificationCenter() = default;
  virtual ~NotificationCenter() = default;
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;

  /// Calls `handler` for each notification of this name, from any sender or, when `object` is not
  /// null, only from that one. `observer` is referred to weakly.
  void addObserver(const WeakTarget& observer, std::string_view name, Handler handler,
                   const void* object = nullptr);
  /// Removes all registrations of the observer.
  void removeObserver(const WeakTarget& observer);
  /// Removes the observer's registrations for this name and, when `object` is not null, sender.
  void removeObserver(const WeakTarget& observer, std::string_view name,
                      const void* object = nullptr);

  void postNotificationName(std::string_view name, const void* object,
                            std::optional<Dictionary> userInfo = std::nullopt);

 private:
  struct Registration;
  std::vector<std::shared_ptr<Registration>> registrations_;
};

}  // namespace valdren::platform
