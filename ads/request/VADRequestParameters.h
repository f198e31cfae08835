// What one request tells the ad engine script.
#pragma once

#include <optional>
#include <string>

#include "ads/request/VADRequestPrivate.h"
#include "platform/ui/Geometry.h"

namespace valdren {

/// Which ads a request is for, and where they are to be shown.
struct VADAdSlot {
  /// Left out when empty.
  std::string adUnitID;

  struct Place {
    platform::Rect frame;
    platform::Rect bounds;
  };
  /// The view that shows the ad, in points; none where there is no view. Interstitials have a
  /// format in its place.
  std::optional<Place> place;
};

/// Main thread only.
class VADRequestParameters {
 public:
  /// What begins every request: it is counted, and what takes the system some time is asked for.
  static void begin(VADRequestPrivate& request);
  /// All that a request which has begun tells. What it tells of earlier ads is then told.
  static platform::Dictionary of(const VADRequestPrivate& request, const VADAdSlot& slot);
};

}  // namespace valdren
