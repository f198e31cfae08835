// A certificate that no client should trust.
#pragma once

#include <gio/gio.h>

#include "platform/base/GObjectPtr.h"

namespace platform = valdren::platform;

namespace sandbox {

/// Self-signed for "127.0.0.1", valid for a day, with a new key at each call. Null when the system
/// has no TLS.
platform::GObjectPtr<GTlsCertificate> selfSignedCertificate();

}  // namespace sandbox
