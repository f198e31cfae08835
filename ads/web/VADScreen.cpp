#include "ads/web/VADScreen.h"

namespace valdren {

VADOrientationCode orientationFromString(std::string_view text) {
  if (text == "any") return kVADOrientationAny;
  if (text == "portrait") return kVADOrientationPortrait;
  if (text == "landscape") return kVADOrientationLandscape;
  return kVADOrientationUnknown;
}

}  // namespace valdren
