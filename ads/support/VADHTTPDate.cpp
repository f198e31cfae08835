#include "ads/support/VADHTTPDate.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "platform/base/Text.h"

namespace valdren {
namespace {

constexpr std::array<std::string_view, 7> kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// Takes a text apart from its front. Once something did not fit, nothing does any more.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  void expect(std::string_view text) {
    if (!rest_.starts_with(text)) return fail();
    rest_.remove_prefix(text.size());
  }

  int number(std::size_t fewestDigits, std::size_t mostDigits) {
    const std::size_t end = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    int number = 0;
    if (end < fewestDigits || end > mostDigits) return fail(), 0;
    std::from_chars(rest_.data(), rest_.data() + end, number);
    rest_.remove_prefix(end);
    return number;
  }

  template <std::size_t size>
  int nameOutOf(const std::array<std::string_view, size>& names) {
    const std::string name = platform::lowercase(rest_.substr(0, 3));
    const auto found = std::find_if(names.begin(), names.end(), [&](std::string_view candidate) {
      return platform::lowercase(candidate) == name;
    });
    if (found == names.end()) return fail(), 0;
    rest_.remove_prefix(3);
    return static_cast<int>(found - names.begin());
  }

  bool fits() const { return fits_ && rest_.empty(); }

 private:
  void fail() {
    fits_ = false;
    rest_ = {};
  }

  std::string_view rest_;
  bool fits_ = true;
};

}  // namespace

std::string httpDateText(platform::Date date) {
  const auto seconds = static_cast<time_t>(std::floor(date.secondsSince1970()));
  std::tm parts{};
  if (!gmtime_r(&seconds, &parts)) return "";
  char text[64];
  std::snprintf(text, sizeof text, "%s, %02d %s %04d %02d:%02d:%02d", kDays[parts.tm_wday].data(),
                parts.tm_mday, kMonths[parts.tm_mon].data(), parts.tm_year + 1900, parts.tm_hour,
                parts.tm_min, parts.tm_sec);
  return text;
}

std::optional<platform::Date> dateFromHTTPText(std::string_view text) {
  Reader reader(platform::trimmed(text));
  std::tm parts{};
  reader.nameOutOf(kDays);
  reader.expect(", ");
  parts.tm_mday = reader.number(1, 2);
  reader.expect(" ");
  parts.tm_mon = reader.nameOutOf(kMonths);
  reader.expect(" ");
  parts.tm_year = reader.number(4, 4) - 1900;
  reader.expect(" ");
  parts.tm_hour = reader.number(2, 2);
  reader.expect(":");
  parts.tm_min = reader.number(2, 2);
  reader.expect(":");
  parts.tm_sec = reader.number(2, 2);
  if (!reader.fits()) return std::nullopt;

  const std::tm asked = parts;
  const time_t seconds = timegm(&parts);  // carries what is out of range, as the 31st of June
  const bool inRange = parts.tm_mday == asked.tm_mday && parts.tm_mon == asked.tm_mon &&
                       parts.tm_hour == asked.tm_hour && parts.tm_min == asked.tm_min &&
                       parts.tm_sec == asked.tm_sec;
  if (!inRange) return std::nullopt;
  return platform::Date(static_cast<double>(seconds));
}

}  // namespace valdren
