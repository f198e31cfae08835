// Times as HTTP writes them.
#pragma once

#include <optional>
#include <string>

#include "platform/base/Date.h"

namespace valdren::platform {

/// "Wed, 09 Jun 2010 10:18:14 GMT", rounded down to whole seconds. Empty for a year that is not
/// within 1 and 9999.
std::string httpDateText(Date date);

/// The instant of a text in one of the forms that HTTP allows; without a zone it is Greenwich's.
/// None when it is of no such form.
std::optional<Date> dateFromHTTPText(const std::string& text);

}  // namespace valdren::platform
