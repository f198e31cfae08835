// Values from outside, made fit to be written as JSON.
#pragma once

#include "platform/base/Value.h"

namespace valdren {

/// The dictionary with its texts and keys as UTF-8, and without what would cost the whole JSON
/// text: numbers that are none (null where they stand in an array), and what is nested too deeply
/// to be written as a value inside a request.
platform::Dictionary jsonSafe(const platform::Dictionary& dictionary);

}  // namespace valdren
