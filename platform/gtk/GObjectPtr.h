// One reference to a toolkit object.
#pragma once

#include <glib-object.h>

#include <utility>

namespace platform {

/// Owns one reference and gives it up at its end. Null is allowed.
template <class T>
class GObjectPtr {
 public:
  GObjectPtr() = default;
  /// Takes over the caller's reference.
  static GObjectPtr adopt(T* object) {
    GObjectPtr owner;
    owner.object_ = object;
    return owner;
  }
  /// Adds a reference of its own; a floating one is taken over.
  static GObjectPtr share(T* object) {
    return adopt(object ? static_cast<T*>(g_object_ref_sink(object)) : nullptr);
  }
  ~GObjectPtr() {
    if (object_) g_object_unref(object_);
  }
  GObjectPtr(const GObjectPtr& other) : GObjectPtr(share(other.object_)) {}
  GObjectPtr(GObjectPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  GObjectPtr& operator=(GObjectPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  T* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  T* object_ = nullptr;
};

}  // namespace platform
