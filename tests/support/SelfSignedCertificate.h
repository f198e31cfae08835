// A valid certificate that nobody trusts.
#pragma once

#include <gio/gio.h>

#include "platform/base/GObjectPtr.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Made anew at each call, for 127.0.0.1, valid for an hour.
platform::GObjectPtr<GTlsCertificate> selfSignedCertificate();

}  // namespace quorbel_tests
