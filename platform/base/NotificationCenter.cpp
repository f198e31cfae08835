#include "platform/base/NotificationCenter.h"

#include <algorithm>

#include "platform/base/MainThread.h"

namespace valdren::platform {
namespace {

bool sameOwner(const std::weak_ptr<const void>& left, const std::weak_ptr<const void>& right) {
  return !left.owner_before(right) && !right.owner_before(left);
}

}  // namespace

struct NotificationCenter::Registration {
  std::weak_ptr<const void> observer;
  std::string name;
  Handler handler;
  const void* object;
  bool removed = false;

  bool isLive() const { return !removed && !observer.expired(); }
  bool accepts(std::string_view posted, const void* sender) const {
    return isLive() && name == posted && (!object || object == sender);
  }
};

NotificationCenter& NotificationCenter::defaultCenter() {
  // Never destroyed: observers still unregister while the process ends.
  static auto* const center = new NotificationCenter;
  return *center;
}

void NotificationCenter::addObserver(const WeakTarget& observer, std::string_view name,
                                     Handler handler, const void* object) {
  assertMainThread();
  std::erase_if(registrations_, [](const auto& registration) { return !registration->isLive(); });
  registrations_.push_back(std::make_shared<Registration>(
      Registration{observer.lifetime(), std::string(name), std::move(handler), object}));
}

void NotificationCenter::removeObserver(const WeakTarget& observer) {
  assertMainThread();
  std::erase_if(registrations_, [target = observer.lifetime()](const auto& registration) {
    if (!sameOwner(registration->observer, target)) return false;
    return registration->removed = true;
  });
}

void NotificationCenter::removeObserver(const WeakTarget& observer, std::string_view name,
                                        const void* object) {
  assertMainThread();
  std::erase_if(registrations_, [&, target = observer.lifetime()](const auto& registration) {
    const bool matches = sameOwner(registration->observer, target) && registration->name == name &&
                         (!object || registration->object == object);
    if (matches) registration->removed = true;
    return matches;
  });
}

void NotificationCenter::postNotificationName(std::string_view name, const void* object,
                                              std::optional<Dictionary> userInfo) {
  assertMainThread();
  const Notification notification{std::string(name), object, std::move(userInfo)};
  const auto present = registrations_;
  for (const auto& registration : present) {
    if (registration->accepts(notification.name, object)) registration->handler(notification);
  }
}

}  // namespace valdren::platform
