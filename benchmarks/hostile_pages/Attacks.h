// The pages that mean harm.
#pragma once

#include <string>
#include <vector>

namespace benchmarks {

struct Attack {
  /// Who runs it: the ad engine script while it builds an address, or the ad.
  enum class Place { Script, Ad };

  const char* name;
  Place place;
  const char* text;  // JavaScript for the script, HTML for the ad
};

/// In the order in which they are tried; the first is none.
const std::vector<Attack>& attacks();

}  // namespace benchmarks
