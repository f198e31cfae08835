// The ads that the sandbox serves.
#pragma once

#include <cstddef>
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
  std::string_view page = "action.html";
  /// Whether it comes round when no ad is chosen.
  bool inTurn = false;
  /// Whether it comes with click tracking URLs. With them a tapped link opens in the web app
  /// screen, without them in the in-app browser.
  bool clickURLs = false;
  /// "X-Urvo-Orientation".
  std::string_view orientation = "any";

  // What the page "action.html" is filled with.
  std::string_view brand = {};
  std::string_view line = {};
  std::string_view button = {};
  std::string_view icon = {};   // a path of 24 by 24
  std::string_view theme = {};  // values of style properties
  std::string_view href = "#";
  /// The parameters of the "open" message as a script's expression.
  std::string_view open = "null";
  /// Whether the ad itself asks the client to ping the click.
  bool pings = true;
};

std::span<const Ad> ads();
/// Null when there is none of that name.
const Ad* adNamed(std::string_view name);

/// The ads that come round, one after another, for ever.
const Ad& adInTurn(std::size_t turn);

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
/// The text with the placement, the pages' common style and the bridge put in.
std::string filledFor(std::string_view content, const Placement& placement);

}  // namespace sandbox
