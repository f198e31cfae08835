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
  /// What a tap opens, for the inspector.
  std::string_view opens;
  /// The file under pages/.
  std::string_view page = "action.html";
  /// Whether it is served in turn when no ad is chosen.
  bool inTurn = false;
  /// Whether it has click tracking URLs. With them a tapped link opens in the web app screen, else
  /// in the in-app browser.
  bool clickURLs = false;
  /// "X-Urvo-Orientation".
  std::string_view orientation = "any";

  // Values for the page "action.html".
  std::string_view brand = {};
  std::string_view line = {};
  std::string_view button = {};
  std::string_view icon = {};   // an SVG path, 24 by 24
  std::string_view theme = {};  // CSS properties
  std::string_view href = "#";
  /// The parameters of the "open" message, as a JavaScript expression.
  std::string_view open = "null";
  /// Whether the ad itself asks the client to ping the click.
  bool pings = true;
};

std::span<const Ad> ads();
/// Null when there is no such ad.
const Ad* adNamed(std::string_view name);

/// The ads that are served in turn, repeated without end.
const Ad& adInTurn(std::size_t turn);

/// Where an ad's links lead, and its ticket.
struct Placement {
  /// Without a slash at the end.
  std::string base;
  /// Empty when there is no TLS.
  std::string secureBase;
  std::string ticket;
};

/// The ad's page with its values.
std::string htmlOf(const Ad& ad, const Placement& placement);
std::string htmlOf(std::string_view page, const Placement& placement);
/// The text with the values of the placement, the common style and the bridge script.
std::string filledFor(std::string_view content, const Placement& placement);

}  // namespace sandbox
