// Everything the sandbox can do, right or wrong, by name.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/Http.h"

namespace sandbox {

/// Who acts it out.
enum class Stage {
  /// The server of the ad engine script, on which the ad unit has no influence.
  ScriptHost,
  /// The ad engine script, in its answer to the client.
  Script,
  /// The ad server.
  AdServer,
};
std::string_view nameOf(Stage stage);

/// What an ad server's answer is made from.
struct Plan {
  /// Without a slash at the end.
  std::string base;
  std::string ticket;
  /// How many redirects this request has behind it.
  int hop = 0;
  /// The address of the next hop.
  std::string nextHop;
  /// The ad that would be served if all went well.
  std::function<Answer()> fill = {};
  /// The page of that name, filled in as an ad.
  std::function<Answer(std::string_view page)> hostile;
};

struct Scenario {
  std::string_view name;
  std::string_view does;
  /// What a client must make of it.
  std::string_view expected;
  Stage stage = Stage::AdServer;
  /// Null at the stage Script, which acts by the name.
  Answer (*answer)(const Plan&) = nullptr;
};

/// In the order in which they are shown; the first is what happens when nothing is chosen.
const std::vector<Scenario>& scenarios();
/// Null when there is none of that name.
const Scenario* scenarioNamed(std::string_view name);

}  // namespace sandbox
