// The hostile pages.
#pragma once

#include <vector>

namespace benchmarks {

struct Attack {
  /// Where it runs: in the ad engine script while it builds an address, or in the ad.
  enum class Place { Script, Ad };

  const char* name;
  Place place;
  const char* text;  // JavaScript for the script, HTML for the ad
};

/// In the order in which they run; the first is no attack.
const std::vector<Attack>& attacks();

}  // namespace benchmarks
