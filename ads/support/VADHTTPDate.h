// Times as HTTP writes them, in English and without a zone: "Wed, 09 Jun 2010 10:18:14".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Date.h"

namespace valdren {

/// The instant in Greenwich time, in whole seconds (rounded down).
std::string httpDateText(platform::Date date);

/// The instant that the text names, or none when it is not of this form. White space at its ends is
/// passed over, letter case does not count, and the day of the month may have one digit.
std::optional<platform::Date> dateFromHTTPText(std::string_view text);

}  // namespace valdren
