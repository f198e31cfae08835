// The request behind a `ValdrenRequest`.
#pragma once

#include <memory>

#include "ads/gobject/ValdrenRequest.h"
#include "ads/request/VADRequest.h"

/// Shared with the object; never null.
const std::shared_ptr<valdren::VADRequest>& valdrenRequestOf(ValdrenRequest* request);
