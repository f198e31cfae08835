// Objects that must outlive the present call, whatever that calls.
#pragma once

#include <array>
#include <memory>

#include "platform/base/WeakPtr.h"

namespace valdren::platform {

/// Made at the top of a function that calls others' code: that code may let go of the objects, and
/// the function still uses them. An object that nobody shares, or whose end has begun, is not held.
template <class... Objects>
class [[nodiscard]] KeptUntilReturn {
 public:
  explicit KeptUntilReturn(Objects&... objects) : kept_{objects.weak_from_this().lock()...} {}
  KeptUntilReturn(const KeptUntilReturn&) = delete;
  KeptUntilReturn& operator=(const KeptUntilReturn&) = delete;

 private:
  std::array<std::shared_ptr<const void>, sizeof...(Objects)> kept_;
};

/// The object of a weak reference, held; null when it is gone or nobody shares it.
template <class Object>
std::shared_ptr<Object> held(const WeakPtr<Object>& reference) {
  Object* const object = reference.get();
  return object ? std::static_pointer_cast<Object>(object->weak_from_this().lock()) : nullptr;
}

}  // namespace valdren::platform
