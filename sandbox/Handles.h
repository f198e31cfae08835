// Owning handles for objects of the C libraries.
#pragma once

#include <glib-object.h>

#include <memory>

namespace sandbox {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using ObjectHandle = std::unique_ptr<T, Unref>;

/// Adds a reference.
template <typename T>
ObjectHandle<T> retained(T* object) {
  return ObjectHandle<T>(static_cast<T*>(g_object_ref(object)));
}

struct DestroySource {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};
using SourceHandle = std::unique_ptr<GSource, DestroySource>;

struct FreeError {
  void operator()(GError* error) const { g_error_free(error); }
};
using ErrorHandle = std::unique_ptr<GError, FreeError>;

struct FreeBytes {
  void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
};
using BytesHandle = std::unique_ptr<GBytes, FreeBytes>;

}  // namespace sandbox
