// Where an ad is fetched from.
#pragma once

#include <optional>

#include "ads/request/VADRequestPrivate.h"
#include "platform/base/URL.h"

namespace valdren {

/// The address in a "loadAdURL" answer of the ad engine script, with the device's signals for the
/// request; none when the answer holds none that can be asked.
std::optional<platform::URL> adURLFromAnswer(const platform::Dictionary& userInfo,
                                             const VADRequestPrivate& request);

}  // namespace valdren
