#include "ads/request/VADBirthday.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "platform/base/Value.h"

namespace valdren {
namespace {

constexpr int kFirstYear = 1;
constexpr int kLastYear = 9999;

// No zone has skipped more than this at midnight, but for whole days.
constexpr int kLastSkippedHour = 3;

bool isKnownYear(std::int64_t year) {
  return year >= kFirstYear && year <= kLastYear;
}

/// The day's place in the calendar, with what exceeds a component carried over.
std::optional<std::chrono::year_month_day> normalized(int month, int day, int year) {
  using namespace std::chrono;
  const std::int64_t months = std::int64_t{year} * 12 + month - 1;
  const std::int64_t wholeYears = (months >= 0 ? months : months - 11) / 12;
  // A day count that leads back into the known years from further away than this is no date.
  if (wholeYears < -kLastYear || wholeYears > 2 * kLastYear) return std::nullopt;
  const auto first = std::chrono::year(static_cast<int>(wholeYears)) /
                     std::chrono::month(static_cast<unsigned>(months - wholeYears * 12 + 1)) / 1;
  const auto since1970 =
      std::int64_t{sys_days(first).time_since_epoch().count()} + std::int64_t{day} - 1;
  const auto bound = [](int boundYear, unsigned boundMonth, unsigned boundDay) {
    const auto date = std::chrono::year(boundYear) / boundMonth / boundDay;
    return std::int64_t{sys_days(date).time_since_epoch().count()};
  };
  if (since1970 < bound(kFirstYear, 1, 1) || since1970 > bound(kLastYear, 12, 31)) {
    return std::nullopt;
  }
  return year_month_day(sys_days(days(static_cast<int>(since1970))));
}

/// None for an instant that no calendar of the system holds, or outside the known years.
std::optional<std::tm> calendarOf(platform::Date date,
                                  std::tm* (*convert)(const std::time_t*, std::tm*)) {
  const double seconds = std::floor(date.secondsSince1970());
  if (!(std::abs(seconds) < 1e12)) return std::nullopt;
  const auto time = static_cast<std::time_t>(seconds);
  std::tm calendar{};
  if (!convert(&time, &calendar) || !isKnownYear(std::int64_t{calendar.tm_year} + 1900)) {
    return std::nullopt;
  }
  return calendar;
}

std::string formatted(const std::tm& calendar, const char* format) {
  char year[16];
  std::snprintf(year, sizeof year, "%04d", calendar.tm_year + 1900);
  char rest[64];
  const std::size_t length = std::strftime(rest, sizeof rest, format, &calendar);
  return year + std::string(rest, length);
}

}  // namespace

std::optional<platform::Date> startOfDay(int month, int day, int year) {
  const auto date = normalized(month, day, year);
  if (!date) return std::nullopt;
  std::time_t time = 0;
  // Where clocks go forward at midnight, the day begins later.
  for (int hour = 0; hour <= kLastSkippedHour; ++hour) {
    std::tm calendar{};
    calendar.tm_year = static_cast<int>(date->year()) - 1900;
    calendar.tm_mon = static_cast<int>(static_cast<unsigned>(date->month())) - 1;
    calendar.tm_mday = static_cast<int>(static_cast<unsigned>(date->day()));
    calendar.tm_hour = hour;
    calendar.tm_isdst = -1;
    const int wanted = calendar.tm_mday;
    time = std::mktime(&calendar);
    if (calendar.tm_mday == wanted) break;
  }
  return platform::Date(static_cast<double>(time));
}

std::optional<std::string> dayString(platform::Date date) {
  const auto calendar = calendarOf(date, localtime_r);
  if (!calendar) return std::nullopt;
  return formatted(*calendar, "%m%d");
}

std::string describedInstant(platform::Date date) {
  const auto calendar = calendarOf(date, gmtime_r);
  if (!calendar) return platform::Value(date).description();
  return formatted(*calendar, "-%m-%d %H:%M:%S +0000");
}

}  // namespace valdren
