// Ties a hidden companion object to a public one.
#pragma once

#include <memory>

namespace valdren {

/// Base of the companions.
class VADPrivateObject {
 public:
  virtual ~VADPrivateObject() = default;
};

/// A process-wide table from public objects to their companions. Keys are addresses and not owned:
/// whoever stores a companion removes it when the public object goes away. Main thread only.
class VADPrivateUtilities {
 public:
  /// Stores `object` under the key, in place of a former one. Null removes.
  static void setPrivateObject(std::shared_ptr<VADPrivateObject> object, const void* forKey);

  /// The companion stored under the key; null when there is none, or it is no such object.
  template <class Object>
  static std::shared_ptr<Object> privateObjectForKey(const void* key) {
    return std::dynamic_pointer_cast<Object>(find(key));
  }

  /// Lets go of the companion; nothing when there is none.
  static void removePrivateObjectForKey(const void* key);

 private:
  static std::shared_ptr<VADPrivateObject> find(const void* key);
};

}  // namespace valdren
