// The sandbox's scenarios, by name.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/Http.h"

namespace sandbox {

/// The part of the network that acts in a scenario.
enum class Actor {
  /// The server of the ad engine script. The ad unit has no influence on it.
  ScriptHost,
  /// The ad engine script, in its answer to the client.
  Script,
  /// The ad server.
  AdServer,
};
std::string_view nameOf(Actor actor);

/// The material for an ad server's answer.
struct Plan {
  /// Without a slash at the end.
  std::string base;
  std::string ticket;
  /// The number of redirects before this request.
  int hop = 0;
  /// The address of the next hop.
  std::string nextHop;
  /// The ad without a fault.
  std::function<Answer()> fill = {};
  /// The named page, served as an ad.
  std::function<Answer(std::string_view page)> hostile;
};

struct Scenario {
  std::string_view name;
  std::string_view does;
  /// The expected reaction of a client.
  std::string_view expected;
  Actor actor = Actor::AdServer;
  /// Null at the actor Script, where the script acts by the scenario's name.
  Answer (*answer)(const Plan&) = nullptr;
};

/// In the order of the inspector. The first is the default.
const std::vector<Scenario>& scenarios();
/// Null when there is no such scenario.
const Scenario* scenarioNamed(std::string_view name);

}  // namespace sandbox
