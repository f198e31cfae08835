/* Why a request failed. */
#pragma once

#include <glib-object.h>

#include "ads/gobject/ValdrenMacros.h"

G_BEGIN_DECLS

/**
 * VALDREN_ERROR:
 *
 * The domain of the errors that [signal@Valdren.Banner::ad-failed] tells of; a code is one of
 * [error@Valdren.Error].
 */
#define VALDREN_ERROR (valdren_error_quark())

/**
 * ValdrenError:
 * @VALDREN_ERROR_INVALID_REQUEST: The request was refused; the log tells why.
 * @VALDREN_ERROR_NO_FILL: There is no ad to show.
 * @VALDREN_ERROR_NETWORK: The network failed.
 * @VALDREN_ERROR_SERVER: The ad server failed.
 * @VALDREN_ERROR_OS_VERSION_TOO_LOW: The system is too old.
 * @VALDREN_ERROR_TIMEOUT: Never raised by the library; for an application's own use.
 *
 * What a request can fail with.
 */
typedef enum {
  VALDREN_ERROR_INVALID_REQUEST = 0,
  VALDREN_ERROR_NO_FILL = 1,
  VALDREN_ERROR_NETWORK = 2,
  VALDREN_ERROR_SERVER = 3,
  VALDREN_ERROR_OS_VERSION_TOO_LOW = 4,
  VALDREN_ERROR_TIMEOUT = 5
} ValdrenError;

VALDREN_API GQuark valdren_error_quark(void);

#define VALDREN_TYPE_ERROR (valdren_error_get_type())
VALDREN_API GType valdren_error_get_type(void);

G_END_DECLS
