// Weak references to objects that others may outlive: delegates, screens, targets of delayed calls.
#pragma once

#include <memory>
#include <utility>

#include "platform/base/Export.h"
#include "platform/base/MainThread.h"

namespace valdren::platform {

/// Base of everything that can be referred to weakly. Inherit it virtually when a class has several
/// such bases. References read null from the moment that this base is destroyed, or earlier, after
/// `invalidateWeakReferences`.
class VALDREN_EXPORT WeakTarget {
 public:
  WeakTarget() = default;
  WeakTarget(const WeakTarget&) : WeakTarget() {}
  WeakTarget& operator=(const WeakTarget&) { return *this; }  // NOLINT: each keeps its own token

  /// A handle that expires with this object.
  std::weak_ptr<const void> lifetime() const { return token_; }

 protected:
  ~WeakTarget() = default;

  /// Makes every weak reference read null now. A class whose destructor does more than release its
  /// members calls this first, so that nobody calls into a half-destroyed object.
  void invalidateWeakReferences() { token_.reset(); }

 private:
  std::shared_ptr<const void> token_ = std::make_shared<char>();
};

/// A reference that owns nothing and reads null once its object is gone. Main thread only.
template <class T>
class WeakPtr {
 public:
  WeakPtr() = default;
  WeakPtr(std::nullptr_t) {}
  WeakPtr(T* object) : object_(object) {
    assertMainThread();
    if (object) lifetime_ = object->lifetime();
  }

  T* get() const {
    assertMainThread();
    return lifetime_.expired() ? nullptr : object_;
  }
  T* operator->() const { return get(); }
  explicit operator bool() const { return get() != nullptr; }
  friend bool operator==(const WeakPtr& left, const WeakPtr& right) {
    return left.get() == right.get();
  }

 private:
  T* object_ = nullptr;
  std::weak_ptr<const void> lifetime_;
};

/// Wraps a callback so that it does nothing once `target` is gone.
template <class Function>
auto whileAlive(const WeakTarget& target, Function function) {
  return [lifetime = target.lifetime(), function = std::move(function)](auto&&... arguments) {
    if (!lifetime.expired()) function(std::forward<decltype(arguments)>(arguments)...);
  };
}

}  // namespace valdren::platform
