// Days of the Gregorian calendar, as birthdays are.
#pragma once

#include <optional>
#include <string>

#include "platform/base/Date.h"

namespace valdren {

/// The first instant of the day in the device's time zone. Components beyond their range carry over
/// into the next larger one; none outside the years 1 to 9999.
std::optional<platform::Date> startOfDay(int month, int day, int year);

/// The day of the instant in the device's time zone, as "yyyyMMdd"; none outside those years.
std::optional<std::string> dayString(platform::Date date);

/// The instant as "yyyy-MM-dd HH:mm:ss +0000"; in seconds since 1970 outside those years.
std::string describedInstant(platform::Date date);

}  // namespace valdren
