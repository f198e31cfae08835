// Numbers as the ad network reads them.
#pragma once

#include <string>

namespace valdren {

class VADNumberUtilities {
 public:
  /// The number with at most six decimals and no trailing zeros ("2", "1.5", "0"), whatever the
  /// locale; "nan", "inf" and "-inf" for what is no number.
  static std::string stringWithFloat(float number);
};

}  // namespace valdren
