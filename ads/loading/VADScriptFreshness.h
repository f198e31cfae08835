// For how long the ad engine script at hand is used before the script host is asked again.
#pragma once

#include "platform/base/Seconds.h"

namespace valdren {

/// Kept in the user defaults, for every banner of the application. Main thread only.
class VADScriptFreshness {
 public:
  /// Between two questions to the script host, in seconds.
  static constexpr platform::Seconds kLifetime{86400};

  /// Whether the script need not be asked for. Never when it should have answered a banner by now
  /// and has not, perhaps because the application ended while it waited.
  bool isFresh();
  /// The script is being asked for.
  void asked();
  /// The script has turned a request into an answer, whatever that was.
  void answered();

 private:
  bool awaitsFirstAnswer_ = false;
};

}  // namespace valdren
