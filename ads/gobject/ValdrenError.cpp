#include "ads/gobject/ValdrenError.h"

G_DEFINE_QUARK(valdren - error - quark, valdren_error)

GType valdren_error_get_type(void) {
  static const GEnumValue values[] = {
      {VALDREN_ERROR_INVALID_REQUEST, "VALDREN_ERROR_INVALID_REQUEST", "invalid-request"},
      {VALDREN_ERROR_NO_FILL, "VALDREN_ERROR_NO_FILL", "no-fill"},
      {VALDREN_ERROR_NETWORK, "VALDREN_ERROR_NETWORK", "network"},
      {VALDREN_ERROR_SERVER, "VALDREN_ERROR_SERVER", "server"},
      {VALDREN_ERROR_OS_VERSION_TOO_LOW, "VALDREN_ERROR_OS_VERSION_TOO_LOW", "os-version-too-low"},
      {VALDREN_ERROR_TIMEOUT, "VALDREN_ERROR_TIMEOUT", "timeout"},
      {0, nullptr, nullptr},
  };
  static const GType type = g_enum_register_static("ValdrenError", values);
  return type;
}
