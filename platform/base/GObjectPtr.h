// Ownership of GLib objects.
#pragma once

#include <glib-object.h>

#include <memory>

namespace valdren::platform {

struct GObjectUnref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
/// Owns one reference. Copying needs `shareGObject`.
template <class T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

/// One more reference to the object, which may be null.
template <class T>
GObjectPtr<T> shareGObject(T* object) {
  if (object) g_object_ref(object);
  return GObjectPtr<T>(object);
}

struct GErrorFree {
  void operator()(GError* error) const { g_error_free(error); }
};
using GErrorPtr = std::unique_ptr<GError, GErrorFree>;

struct GBytesUnref {
  void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
};
using GBytesPtr = std::unique_ptr<GBytes, GBytesUnref>;

struct GSourceDestroy {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};
/// Destroying the handle removes the source.
using GSourcePtr = std::unique_ptr<GSource, GSourceDestroy>;

}  // namespace valdren::platform
