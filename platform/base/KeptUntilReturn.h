// Keeps objects alive until the present function returns.
#pragma once

#include <array>
#include <memory>

#include "platform/base/WeakPtr.h"

namespace valdren::platform {

/// Made at the top of a function that calls foreign code, which may release the objects while the
/// function still uses them. Objects without a shared owner, or in destruction, are not held.
template <class... Objects>
class [[nodiscard]] KeptUntilReturn {
 public:
  explicit KeptUntilReturn(Objects&... objects) : kept_{objects.weak_from_this().lock()...} {}
  KeptUntilReturn(const KeptUntilReturn&) = delete;
  KeptUntilReturn& operator=(const KeptUntilReturn&) = delete;

 private:
  std::array<std::shared_ptr<const void>, sizeof...(Objects)> kept_;
};

/// Holds the object of a weak reference; null when it is destroyed or has no shared owner.
template <class Object>
std::shared_ptr<Object> held(const WeakPtr<Object>& reference) {
  Object* const object = reference.get();
  return object ? std::static_pointer_cast<Object>(object->weak_from_this().lock()) : nullptr;
}

}  // namespace valdren::platform
