// Landing pages.
#pragma once

#include "sandbox/Ads.h"
#include "sandbox/Http.h"

namespace sandbox {

/// The page for "/land/NAME". Some of them fail on purpose. Status 404 for unknown names.
Answer landingAnswer(const Request& request, const Placement& placement);

}  // namespace sandbox
