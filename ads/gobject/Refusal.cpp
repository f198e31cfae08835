#include "ads/gobject/Refusal.h"

#include <gtk/gtk.h>

#include <string>

#include "platform/base/Log.h"
#include "platform/base/MainThread.h"

bool isRefused(const char* function) {
  const char* reason = nullptr;
  if (!valdren::platform::isMainThread()) {
    reason = " belongs on the main thread; nothing is done.";
  } else if (!gtk_is_initialized()) {
    reason = " needs GTK, which is not initialised yet; nothing is done.";
  }
  if (reason) valdren::platform::logWarning(std::string("<Valdren> ") + function + reason);
  return reason != nullptr;
}
