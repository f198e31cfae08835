// Values of the C interface as the client's own.
#pragma once

#include <glib.h>

#include <optional>

#include "platform/base/Value.h"

/// None for a type that has no equal here. Nothing is kept of the variant.
std::optional<valdren::platform::Value> valueOfVariant(GVariant* variant);
