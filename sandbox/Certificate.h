// A certificate that no client should trust.
#pragma once

#include <gio/gio.h>

#include "sandbox/Handles.h"

namespace sandbox {

/// Self-signed for "127.0.0.1", valid for a day, with a new key at each call. Null when the system
/// has no TLS.
ObjectHandle<GTlsCertificate> selfSignedCertificate();

}  // namespace sandbox
