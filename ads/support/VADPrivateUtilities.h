// Ties a hidden companion object to a public one.
#pragma once

#include <memory>

namespace valdren {

/// A process-wide table from public objects to their companions. Keys are addresses and not owned:
/// whoever stores a companion removes it when the public object goes away. Main thread only.
class VADPrivateUtilities {
 public:
  /// Stores `object` under the key, in place of a former one. Null removes.
  template <class Object>
  static void setPrivateObject(std::shared_ptr<Object> object, const void* forKey) {
    store(std::move(object), forKey);
  }

  /// The companion stored under the key, or null. `Object` must be what was stored.
  template <class Object>
  static std::shared_ptr<Object> privateObjectForKey(const void* key) {
    return std::static_pointer_cast<Object>(find(key));
  }

  /// Lets go of the companion; nothing when there is none.
  static void removePrivateObjectForKey(const void* key);

 private:
  static void store(std::shared_ptr<void> object, const void* key);
  static std::shared_ptr<void> find(const void* key);
};

}  // namespace valdren
