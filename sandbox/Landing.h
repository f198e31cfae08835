// Where taps lead.
#pragma once

#include "sandbox/Ads.h"
#include "sandbox/Http.h"

namespace sandbox {

/// The page under "/land/NAME": good ones and bad ones. Status 404 when there is none of the name.
Answer landingAnswer(const Request& request, const Placement& placement);

}  // namespace sandbox
