// The ads that the sandbox serves.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace sandbox {

struct Ad {
  std::string_view name;
  std::string_view title;
  /// What a tap asks for, in words.
  std::string_view opens;
  /// The file under pages/.
  std::string_view page;
  /// Whether it comes with click tracking URLs. With them a tapped link opens in the web app
  /// screen, without them in the in-app browser.
  bool clickURLs = false;
  /// "X-Urvo-Orientation".
  std::string_view orientation = "any";
  // What pages/action.html is filled with.
  std::string_view brand = {};
  std::string_view line = {};
  std::string_view button = {};
  std::string_view theme = {};
  /// A script's expression that carries the tap out.
  std::string_view action = {};
};

std::span<const Ad> ads();
/// Null when there is none of that name.
const Ad* adNamed(std::string_view name);

/// Where an ad's links lead and under which names it is counted.
struct Placement {
  /// Without a slash at the end.
  std::string base;
  /// Empty when there is no TLS.
  std::string secureBase;
  std::string ticket;
};

/// The page, filled in.
std::string htmlOf(const Ad& ad, const Placement& placement);
std::string htmlOf(std::string_view page, const Placement& placement);

}  // namespace sandbox
