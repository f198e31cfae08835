#include "ads/support/VADNumberUtilities.h"

#include <charconv>
#include <cmath>

namespace valdren {

std::string VADNumberUtilities::stringWithFloat(float number) {
  char text[64];  // the largest float has 39 digits before the point
  const auto [end, error] =
      std::to_chars(text, text + sizeof text, double{number}, std::chars_format::fixed, 6);
  std::string result(text, end);
  if (!std::isfinite(number)) return result;
  result.erase(result.find_last_not_of('0') + 1);
  if (result.back() == '.') result.pop_back();
  return result;
}

}  // namespace valdren
