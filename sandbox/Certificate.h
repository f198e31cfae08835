// A certificate that no client should trust.
#pragma once

#include <gio/gio.h>

#include "sandbox/Handles.h"

namespace sandbox {

/// Self-signed for "127.0.0.1", good for a day, its key made anew at each call. Null when the
/// system has no TLS.
ObjectHandle<GTlsCertificate> selfSignedCertificate();

}  // namespace sandbox
